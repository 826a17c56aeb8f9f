#pragma once

#include "gfx/IGfxInfo.h"

#include <ostream>

namespace brisk {

// For the messages of failing tests.
inline void PrintTo(const DisplayInfo& mode, std::ostream* stream) {
    *stream << mode.width << 'x' << mode.height << ' ' << mode.bitsPerPixel << " bits " << mode.refreshRate << " Hz";
}

} // namespace brisk
