#include "Toasts.h"

#include "support/Wine.h"
#include "toast/ToastManager.h"

namespace brisk::testing {

Toasts::Toasts() {
    if (!needsWine("toasts and the service's shortcut would be the user's own")) {
        return;
    }
    static const bool registered = (standin::registerStandin(), true);
    static_cast<void>(registered);
    control.reset();
    SetEnvironmentVariableW(standin::kRecordVariable, record.c_str());
}

Toasts::~Toasts() {
    if (!isWine()) {
        return;
    }
    ToastManager::instance()->cleanup();
    control.reset();
    SetEnvironmentVariableW(standin::kRecordVariable, nullptr);
}

std::vector<std::string> Toasts::shown() const {
    std::vector<std::string> documents;
    std::string last;
    for (const std::string& line : standin::readRecord(record)) {
        if (line.starts_with("LoadXml ")) {
            last = line.substr(8);
        } else if (line.starts_with("Show ")) {
            documents.push_back(last);
        }
    }
    return documents;
}

std::vector<std::string> Toasts::events() const {
    std::vector<std::string> lines = standin::readRecord(record);
    std::erase_if(lines, [](const std::string& line) {
        return !line.starts_with("Show ") && !line.starts_with("Hide ") && !line.starts_with("Activated ") &&
               !line.starts_with("Dismissed ") && !line.starts_with("Failed ");
    });
    return lines;
}

} // namespace brisk::testing
