#include "gfx/KestrelDisplay.h"

#include "base/Log.h"
#include "base/WindowsHandles.h"

#include <cmath>

namespace brisk {

namespace {

using namespace kestrel;

// The desktop whose top-left point is the origin, which is the primary display's.
ComReference<IDesktop> findPrimaryDesktop(IDesktopList& desktops) {
    for (std::uint32_t index = desktops.Begin(); index < desktops.End(); ++index) {
        ComReference<IDesktop> desktop;
        if (!succeeded(desktops.At(index, desktop.receive())) || !desktop) {
            logLine("Brisk : failed to get Kestrel desktop.");
            continue;
        }
        Point topLeft{};
        if (!succeeded(desktop->GetTopLeft(&topLeft))) {
            logLine("Brisk : failed to get Kestrel top left point of a desktop.");
            continue;
        }
        if (topLeft.x == 0 && topLeft.y == 0) {
            return desktop;
        }
    }
    return {};
}

// The displays of the primary desktop; empty, without a line for the list itself, on failure.
ComReference<IDisplayList> findPrimaryDisplays(IDesktopServices& services) {
    ComReference<IDesktopList> desktops;
    if (!succeeded(services.GetDesktops(desktops.receive())) || !desktops) {
        logLine("Brisk : failed to get Kestrel desktop list.");
        return {};
    }
    const ComReference<IDesktop> desktop = findPrimaryDesktop(*desktops.get());
    if (!desktop) {
        return {};
    }
    DesktopType type = DesktopType::Single;
    if (succeeded(desktop->GetType(&type)) && type == DesktopType::SpanView) {
        // A spanned desktop has no single native mode.
        logLine("Brisk : SPANVIEW mode detected on a desktop.");
        return {};
    }
    ComReference<IDisplayList> displays;
    return succeeded(desktop->GetDisplays(displays.receive())) ? std::move(displays) : ComReference<IDisplayList>();
}

DisplayInfo readDisplay(IDisplay& display) {
    Resolution resolution{};
    if (!succeeded(display.GetNativeResolution(&resolution))) {
        logLine("Brisk : Kestrel failed to get native resolution of a primary display.");
        return {};
    }
    double refreshRate = 0;
    if (!succeeded(display.GetRefreshRate(&refreshRate))) {
        logLine("Brisk : Kestrel failed to get refresh rate of a primary display.");
        return {};
    }
    logLine("Brisk : Kestrel native display features fetched.");
    // llround rounds halves away from zero.
    return {static_cast<std::uint32_t>(resolution.width), static_cast<std::uint32_t>(resolution.height), 0,
            static_cast<std::uint32_t>(std::llround(refreshRate))};
}

} // namespace

DisplayInfo readNativeMode(ISystemServices* system) {
    if (!system) {
        logLine("Brisk : failed to get Kestrel system services.");
        return {};
    }
    ComReference<IDesktopServices> services;
    if (!succeeded(system->GetDesktopServices(services.receive())) || !services) {
        logLine("Brisk : failed to get Kestrel desktop services.");
        return {};
    }
    const ComReference<IDisplayList> displays = findPrimaryDisplays(*services.get());
    if (!displays) {
        logLine("Brisk : failed to get Kestrel display list.");
        return {};
    }
    if (displays->Size() != 1) {
        logLine("Brisk : Kestrel detected more than one display on a desktop.");
        return {};
    }
    ComReference<IDisplay> display;
    if (!succeeded(displays->At(displays->Begin(), display.receive())) || !display) {
        logLine("Brisk : Kestrel failed to get primary display.");
        return {};
    }
    logLine("Brisk : Kestrel primary display found.");
    return readDisplay(*display.get());
}

} // namespace brisk
