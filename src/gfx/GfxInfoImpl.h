#pragma once

#include "gfx/IGfxInfo.h"

#include <vector>

namespace brisk {

// What is the same for every source: the operating system's display modes.
class GfxInfoImpl : public IGfxInfo {
public:
    bool isInitialized() const override { return initialized; }
    DisplayInfo getCurrentDisplayInfo() override;
    DisplayInfo getOptimalResolution(const DisplayInfo& reference) override;

    // Every mode of the primary display, duplicates included, in the system's order; empty on failure.
    std::vector<DisplayInfo> getDisplayModes() const;

protected:
    bool initialized = false;
};

} // namespace brisk
