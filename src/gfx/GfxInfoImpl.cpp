#include "gfx/GfxInfoImpl.h"

#include "app/Log.h"
#include "gfx/OptimalResolution.h"

#include <optional>
#include <string>

#include <windows.h>

namespace brisk {

namespace {

// The names of the display devices that are flagged as primary.
std::vector<std::string> findPrimaryDevices() {
    std::vector<std::string> names;
    DISPLAY_DEVICEA device{};
    device.cb = sizeof device;
    for (DWORD index = 0; EnumDisplayDevicesA(nullptr, index, &device, 0); ++index) {
        if (device.StateFlags & DISPLAY_DEVICE_PRIMARY_DEVICE) {
            names.emplace_back(device.DeviceName);
        }
    }
    return names;
}

// One of a device's modes by number, or ENUM_CURRENT_SETTINGS; nothing when there is no such mode.
std::optional<DisplayInfo> readMode(const std::string& device, DWORD number) {
    DEVMODEA mode{};
    mode.dmSize = sizeof mode;
    if (!EnumDisplaySettingsA(device.c_str(), number, &mode)) {
        return std::nullopt;
    }
    return DisplayInfo{mode.dmPelsWidth, mode.dmPelsHeight, mode.dmBitsPerPel, mode.dmDisplayFrequency};
}

} // namespace

DisplayInfo GfxInfoImpl::getCurrentDisplayInfo() {
    logLine("Brisk : get current display info.");
    DisplayInfo current;
    for (const std::string& device : findPrimaryDevices()) {
        current = readMode(device, ENUM_CURRENT_SETTINGS).value_or(current);
    }
    return current;
}

std::vector<DisplayInfo> GfxInfoImpl::getDisplayModes() const {
    logLine("Brisk : get available display info modes.");
    std::vector<DisplayInfo> modes;
    if (const std::vector<std::string> devices = findPrimaryDevices(); !devices.empty()) {
        for (DWORD number = 0; const auto mode = readMode(devices.front(), number); ++number) {
            modes.push_back(*mode);
        }
    }
    logLine("Brisk : found ", std::dec, modes.size(), " display modes.");
    return modes;
}

DisplayInfo GfxInfoImpl::getOptimalResolution(const DisplayInfo& reference) {
    const DisplayInfo optimal = findOptimalResolution(getDisplayModes(), reference);
    if (optimal == DisplayInfo{}) {
        logLine("Brisk : unable to find optimal resolution.");
    } else {
        logLine("Brisk : optimal resolution: ", std::dec, optimal.width, "x", optimal.height);
    }
    return optimal;
}

} // namespace brisk
