#include "tracking/Services.h"

#include "toast/ToastManager.h"

namespace brisk {

std::shared_ptr<IGfxInfo> gfxInfo;
std::string toastImagePath;

TitleManager& titleManager() {
    static TitleManager manager;
    return manager;
}

void clearToasts() { ToastManager::instance()->clear(); }

void showToast(const std::string& title, const std::string& subtitle, const std::string& body,
               const std::vector<ToastAction>& actions) {
    ToastManager::instance()->show(toastImagePath, title, subtitle, body, actions);
}

} // namespace brisk
