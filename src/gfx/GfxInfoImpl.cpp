#include "gfx/GfxInfoImpl.h"

#include "base/Log.h"
#include "gfx/OptimalResolution.h"

#include <optional>
#include <string>

#include <windows.h>

namespace brisk {

namespace {

// The next display device from the index on that is flagged as primary; the index then stands behind it.
std::optional<std::string> findPrimaryDevice(DWORD& index) {
    DISPLAY_DEVICEA device{};
    device.cb = sizeof device;
    while (EnumDisplayDevicesA(nullptr, index++, &device, 0)) {
        if (device.StateFlags & DISPLAY_DEVICE_PRIMARY_DEVICE) {
            return device.DeviceName;
        }
    }
    return std::nullopt;
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
    DWORD index = 0;
    while (const auto device = findPrimaryDevice(index)) {
        current = readMode(*device, ENUM_CURRENT_SETTINGS).value_or(current);
    }
    return current;
}

std::vector<DisplayInfo> GfxInfoImpl::getDisplayModes() const {
    logLine("Brisk : get available display info modes.");
    std::vector<DisplayInfo> modes;
    DWORD index = 0;
    if (const auto device = findPrimaryDevice(index)) {
        for (DWORD number = 0; const auto mode = readMode(*device, number); ++number) {
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
