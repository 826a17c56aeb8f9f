#include "base/Log.h"

#include "base/DebuggerOutput.h"
#include "base/TextEncoding.h"

#include <fstream>
#include <utility>

namespace brisk {

Log& processLog = *new Log;

void Log::setFilePath(const std::string& path) {
    const std::lock_guard lock(mutex);
    filePath = path;
}

void Log::setDestination(std::function<void(const std::string&)> receiver) {
    const std::lock_guard lock(mutex);
    destination = std::move(receiver);
}

Log& Log::commit(std::ostringstream& pending) {
    const std::string text = pending.str();
    if (destination) {
        destination(text);
    } else if (filePath.empty()) {
        writeToDebugger(text);
    } else {
        // Opened and closed for every line: it is on disk when this returns, and the file can be read, moved or deleted
        // while the service runs. The runtime opens streams without denying others access (_SH_DENYNO).
        std::ofstream file(toPath(filePath), std::ios::out | std::ios::app);
        file.write(text.data(), static_cast<std::streamsize>(text.size()));
    }
    pending.str({});
    pending.clear();
    return *this;
}

} // namespace brisk
