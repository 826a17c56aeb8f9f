#include "gfx/ScriptedDisplays.h"

#include "support/Faults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

BRISK_FAULT_POINT("user32.dll", EnumDisplayDevicesA)
BRISK_FAULT_POINT("user32.dll", EnumDisplaySettingsA)

namespace brisk {

namespace {

constexpr WORD kModeSize = 156;

} // namespace

ScriptedDisplays::ScriptedDisplays(std::vector<ScriptedDevice> initial) : devices(std::move(initial)) {
    EnumDisplaySettingsAFault.reset();
    EnumDisplayDevicesAFault.intercept([this](LPCSTR adapter, DWORD index, PDISPLAY_DEVICEA device, DWORD flags) {
        EXPECT_EQ(adapter, nullptr);
        EXPECT_EQ(flags, 0u);
        EXPECT_EQ(device->cb, sizeof(DISPLAY_DEVICEA));
        if (onDeviceAsked) {
            onDeviceAsked();
        }
        return giveDevice(index, *device);
    });
    EnumDisplaySettingsAFault.intercept([this](LPCSTR name, DWORD number, PDEVMODEA mode) {
        DEVMODEA zeroed{};
        zeroed.dmSize = kModeSize;
        EXPECT_EQ(std::memcmp(mode, &zeroed, kModeSize), 0) << "the mode is not zeroed or has a wrong size";
        return giveMode(name, number, *mode);
    });
}

ScriptedDisplays::~ScriptedDisplays() {
    EnumDisplayDevicesAFault.reset();
    EnumDisplaySettingsAFault.reset();
}

unsigned ScriptedDisplays::modesAsked() const {
    return EnumDisplaySettingsAFault.calls();
}

BOOL ScriptedDisplays::giveDevice(DWORD index, DISPLAY_DEVICEA& device) const {
    if (index >= devices.size()) {
        return FALSE;
    }
    device.DeviceName[devices[index].name.copy(device.DeviceName, sizeof device.DeviceName - 1)] = '\0';
    device.StateFlags = DISPLAY_DEVICE_ATTACHED_TO_DESKTOP;
    if (devices[index].primary) {
        device.StateFlags |= DISPLAY_DEVICE_PRIMARY_DEVICE;
    }
    return TRUE;
}

BOOL ScriptedDisplays::giveMode(const std::string& name, DWORD number, DEVMODEA& mode) const {
    const auto device =
        std::find_if(devices.begin(), devices.end(), [&](const ScriptedDevice& each) { return each.name == name; });
    if (device == devices.end()) {
        ADD_FAILURE() << "no device " << name;
        return FALSE;
    }
    EXPECT_TRUE(device->primary) << name << " is asked for its modes";
    std::optional<DisplayInfo> found;
    if (number == ENUM_CURRENT_SETTINGS) {
        found = device->current;
    } else if (number < device->modes.size()) {
        found = device->modes[number];
    }
    // What a failing call leaves behind must not be read.
    const DisplayInfo given = found.value_or(DisplayInfo{1, 1, 1, 1});
    mode.dmPelsWidth = given.width;
    mode.dmPelsHeight = given.height;
    mode.dmBitsPerPel = given.bitsPerPixel;
    mode.dmDisplayFrequency = given.refreshRate;
    return found.has_value();
}

} // namespace brisk
