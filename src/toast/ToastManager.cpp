#include "toast/ToastManager.h"

#include "base/Log.h"
#include "base/Version.h"
#include "toast/WinToast.h"

#include <mutex>
#include <stdexcept>

namespace brisk {

namespace {

using WinToastLib::WinToast;

// The colon is U+A789: the name is also a folder's, where an ASCII colon may not stand.
constexpr wchar_t kCompanyName[] = L"Orlan Software\uA789 Meridian Edition";
constexpr char kAppName[] = "Orlan Game Performance Monitoring";

// Button callbacks reach for the manager on the notification thread, until the process ends: never destroyed.
std::mutex managerMutex;
std::shared_ptr<ToastManager>& manager = *new std::shared_ptr<ToastManager>;

std::wstring widen(const std::string& narrow) {
    std::wstring wide;
    for (const char character : narrow) {
        wide += static_cast<wchar_t>(static_cast<signed char>(character));
    }
    return wide;
}

} // namespace

std::shared_ptr<ToastManager> ToastManager::instance() {
    const std::lock_guard lock(managerMutex);
    if (!manager) {
        manager.reset(new ToastManager);
    }
    return manager;
}

ToastManager::ToastManager() {
    if (!WinToast::isCompatible()) {
        // These words for good (docs/decisions/kept-behaviour.md).
        throw std::runtime_error("ToastManager: Error, system in not supported");
    }
    WinToast& winToast = WinToast::instance();
    winToast.setAppName(widen(kAppName));
    winToast.setCompanyName(kCompanyName);
    winToast.setAppUserModelId(
        WinToast::configureAUMI(widen("Orlan"), widen("Experience"), widen("Brisk"), widen(kVersion)));
    if (!winToast.initialize()) {
        throw std::runtime_error("ToastManager: Error, could not initialize the library");
    }
}

void ToastManager::show(const std::string& imagePath, const std::string& title, const std::string& subtitle,
                        const std::string& body, const std::vector<ToastAction>& actions) {
    WinToastLib::ToastTemplate toast;
    toast.type = WinToastLib::ToastTemplateType::ImageAndText04;
    toast.imagePath = widen(imagePath);
    toast.texts = {widen(title), widen(subtitle), widen(body)};
    for (const ToastAction& action : actions) {
        toast.actions.push_back(widen(action.label));
    }
    if (WinToast::instance().showToast(toast, std::make_shared<WinToastHandler>(actions)) < 0) {
        logLine("Brisk : ToastManager: Can't show notification");
    }
}

void ToastManager::clear() {
    WinToast::instance().clear();
}

void ToastManager::cleanup() {
    clear();
    const std::lock_guard lock(managerMutex);
    manager.reset();
}

} // namespace brisk
