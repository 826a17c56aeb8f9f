// What tests/tracking/Toasts.h promises, from the notification area of the simulated Windows.
#include "tracking/Toasts.h"

#include "host/simulation/SimulatedCall.h"
#include "toast/ToastManager.h"

namespace brisk::testing {

Toasts::Toasts() { control.reset(); }

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
            document += character == L'\n' ? "\\n" : std::string(1, static_cast<char>(character));
        }
        documents.push_back(document);
    }
    return documents;
}

std::vector<std::string> Toasts::events() const {
    const std::lock_guard lock(host::modelMutex());
    return host::notificationArea().events;
}

std::string toastDocument(const std::string& title, const std::string& subtitle, const std::string& body,
                          const std::vector<std::string>& buttons) {
    std::string xml = R"(\n<toast template="ToastGeneric" duration="long" scenario="Default">)"
                      R"(<visual><binding template="ToastGeneric">)"
                      R"(<image placement="appLogoOverride" hint-crop="circle" src=""/>)";
    xml += "<text>" + title + "</text><text>" + subtitle + "</text>\\n" + body + "</binding></visual><actions>";
    for (std::size_t k = 0; k < buttons.size(); ++k) {
        xml += "<action content=\"" + buttons[k] + "\" arguments=\"" + std::to_string(k) + "\"/>";
    }
    return xml + "</actions></toast>";
}

std::string plainToast(const std::string& title, const std::string& subtitle) {
    return toastDocument(title, subtitle, "<text></text>", {});
}

} // namespace brisk::testing
