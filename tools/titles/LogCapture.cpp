#include "tools/titles/LogCapture.h"

#include "base/Log.h"

#include <utility>

namespace brisk::workbench {

LogCapture::LogCapture() {
    processLog.setDestination([this](const std::string& text) { received += text; });
}

LogCapture::~LogCapture() {
    take();
    processLog.setDestination({});
}

std::string LogCapture::take() {
    // Nothing but a line end comes where no text waits.
    std::string before = std::exchange(received, {});
    logLine();
    if (received != "\n") {
        before += received;
    }
    received.clear();
    return before;
}

} // namespace brisk::workbench
