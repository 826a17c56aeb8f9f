// What tests/tracking/Toasts.h promises, from the notification area of the simulated Windows.
#include "tracking/Toasts.h"

#include "host/simulation/SimulatedCall.h"
#include "toast/ToastManager.h"

namespace brisk::testing {

Toasts::Toasts() {
    control.reset();
}

Toasts::~Toasts() {
    ToastManager::instance()->cleanup();
    control.reset();
}

std::vector<std::string> Toasts::shown() const {
    const std::lock_guard lock(host::modelMutex());
    std::vector<std::string> documents;
    for (const auto& toast : host::notificationArea().all) {
        std::string document;
        for (const wchar_t character : toast->document) {
            document += character == L'\n'   ? "\\n"
                        : character == L'\\' ? "\\\\"
                                             : std::string(1, static_cast<char>(character));
        }
        documents.push_back(document);
    }
    return documents;
}

std::vector<std::string> Toasts::events() const {
    const std::lock_guard lock(host::modelMutex());
    return host::notificationArea().events;
}

} // namespace brisk::testing
