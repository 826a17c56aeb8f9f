#include "tools/titles/MachineDisplay.h"

#include "gfx/CreateGfxInfo.h"
#include "tools/titles/LogCapture.h"

namespace brisk::workbench {

std::optional<Display> machineDisplay() {
    const LogCapture log;
    const std::shared_ptr<IGfxInfo> gfx = createGfxInfo();
    const DisplayInfo native = gfx ? gfx->getNativeDisplayInfo() : DisplayInfo();
    if (native.width == 0 || native.height == 0) {
        return std::nullopt;
    }
    const DisplayInfo lower = gfx->getOptimalResolution(native);
    Display display{{native.width, native.height}, std::nullopt};
    if (lower.width != 0) {
        display.lower = Size{lower.width, lower.height};
    }
    return display;
}

} // namespace brisk::workbench
