#include "app/TitleInfo.h"

#include "BriskHost.h"
#include "base/Log.h"
#include "titles/JsonElements.h"

#include <sstream>
#include <string>

namespace brisk {

void receiveTitleInfo(HWND /*window*/, WPARAM wParam, const COPYDATASTRUCT* data) {
    logLine("Brisk : receiveTitleInfo");
    if (wParam != BRISK_TITLE_INFO_TAG || !data || data->dwData != wParam) {
        return;
    }
    try {
        // No string can be made of a null pointer. A block without memory is empty, and so malformed.
        std::istringstream text(data->lpData ? std::string(static_cast<const char*>(data->lpData), data->cbData)
                                             : std::string());
        // Nothing is made of the block (docs/decisions/kept-behaviour.md): reading it tells a malformed one.
        readJsonElements(text, nullptr);
        return;
    } catch (...) { // NOLINT(bugprone-empty-catch): out of memory is told as a malformed block is
    }
    logLine("Brisk : got exception while processing titles info");
}

} // namespace brisk
