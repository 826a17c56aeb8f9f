#include "gfx/CreateGfxInfo.h"

#include "base/Log.h"
#include "gfx/GfxInfoGen.h"
#include "gfx/GfxInfoKestrel.h"

namespace brisk {

std::shared_ptr<IGfxInfo> createGfxInfo() {
    std::shared_ptr<IGfxInfo> gfxInfo = std::make_shared<GfxInfoKestrel>();
    if (!gfxInfo->isInitialized()) {
        gfxInfo = std::make_shared<GfxInfoGen>();
    }
    if (!gfxInfo->isInitialized()) {
        logLine("Brisk : failed to create GfxInfo.");
        return {};
    }
    return gfxInfo;
}

} // namespace brisk
