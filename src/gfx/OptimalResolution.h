#pragma once

#include "gfx/IGfxInfo.h"

#include <vector>

namespace brisk {

// The second largest resolution among the modes that are no wider than the reference and have its shape (height over
// width differs by 0.01 at most). With the native resolution as reference that is the next step down. Only width and
// height are set; all zero when there are fewer than two such resolutions.
DisplayInfo findOptimalResolution(const std::vector<DisplayInfo>& modes, const DisplayInfo& reference);

} // namespace brisk
