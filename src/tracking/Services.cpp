#include "tracking/Services.h"

#include "toast/ToastManager.h"

namespace brisk {

std::shared_ptr<IGfxInfo> gfxInfo;
// Never destroyed, as the title manager: a button's action may need them until the process ends.
std::string& toastImagePath = *new std::string;

TitleManager& titleManager() {
    static TitleManager& manager = *new TitleManager;
    return manager;
}

void clearToasts() {
    ToastManager::instance()->clear();
}

void showToast(const std::string& title, const std::string& subtitle, const std::string& body,
               const std::vector<ToastAction>& actions) {
    ToastManager::instance()->show(toastImagePath, title, subtitle, body, actions);
}

} // namespace brisk
