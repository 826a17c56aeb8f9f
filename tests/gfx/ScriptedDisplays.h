// Display devices and modes that a test makes up, in the place of the system's.
#pragma once

#include "gfx/IGfxInfo.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <windows.h>

namespace brisk {

struct ScriptedDevice {
    std::string name;
    bool primary = true;
    // Empty when it cannot be read.
    std::optional<DisplayInfo> current;
    std::vector<DisplayInfo> modes;
};

// While it lives, these are the machine's display devices. Every call that the service makes is checked.
class ScriptedDisplays {
public:
    explicit ScriptedDisplays(std::vector<ScriptedDevice> initial = {});
    ScriptedDisplays(const ScriptedDisplays&) = delete;
    ScriptedDisplays& operator=(const ScriptedDisplays&) = delete;
    ~ScriptedDisplays();

    // Modes asked for so far, those that cannot be read included.
    unsigned modesAsked() const;

    // May be changed at any time.
    std::vector<ScriptedDevice> devices;
    // Called whenever a device is asked for.
    std::function<void()> onDeviceAsked;

private:
    BOOL giveDevice(DWORD index, DISPLAY_DEVICEA& device) const;
    BOOL giveMode(const std::string& name, DWORD number, DEVMODEA& mode) const;
};

} // namespace brisk
