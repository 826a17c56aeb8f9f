#include "gfx/GfxInfoGen.h"

#include "base/Log.h"

namespace brisk {

GfxInfoGen::GfxInfoGen() {
    logLine("Brisk : initializing GfxInfoGen.");
    const DisplayInfo current = GfxInfoImpl::getCurrentDisplayInfo();
    refreshRate = current.refreshRate;
    initialized = current.width != 0;
}

} // namespace brisk
