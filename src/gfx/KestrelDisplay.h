#pragma once

#include "gfx/IGfxInfo.h"
#include "gfx/Kestrel.h"

namespace brisk {

// The native resolution (pixels) and the refresh rate (Hz, rounded) of the one display of the desktop at the origin;
// bitsPerPixel stays 0. All zero, with a log line, on any failure, on a spanned desktop and on one with several
// displays. The services may be null.
DisplayInfo readNativeMode(kestrel::ISystemServices* system);

} // namespace brisk
