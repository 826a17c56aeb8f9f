#pragma once

#include "gfx/GfxInfoImpl.h"

namespace brisk {

// The operating system alone. It cannot measure frames: a running game is taken to run at the refresh rate that the
// primary display had at construction.
class GfxInfoGen final : public GfxInfoImpl {
public:
    // Not initialised when no primary display reports a mode.
    GfxInfoGen();

    std::uint32_t getCurrentFps() override { return refreshRate; }
    // The current mode stands for the native one.
    DisplayInfo getNativeDisplayInfo() override { return getCurrentDisplayInfo(); }

private:
    std::uint32_t refreshRate = 0; // Hz
};

} // namespace brisk
