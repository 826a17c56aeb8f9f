// A model of the toast helper in the place of the real one: the same documents, tables and events without COM.
#include "host/simulation/Toasts.h"

#include "host/simulation/SimulatedCall.h"
#include "toast/ToastDocument.h"
#include "toast/WinToast.h"

namespace brisk::host {

namespace {

template <class Event>
bool deliver(Toast& toast, const Event& event) {
    const std::shared_ptr<WinToastLib::IWinToastHandler> handler = toast.handler;
    try {
        event(*handler);
        handler->toastCompleted(toast.release);
        return true;
    } catch (...) {
        return false;
    }
}

} // namespace

std::vector<std::shared_ptr<Toast>> NotificationArea::shown() const {
    std::vector<std::shared_ptr<Toast>> result;
    for (const auto& toast : all) {
        if (toast->isShown) {
            result.push_back(toast);
        }
    }
    return result;
}

NotificationArea& notificationArea() {
    static NotificationArea theArea;
    return theArea;
}

bool pressButton(Toast& toast, int index) {
    return deliver(toast, [index](WinToastLib::IWinToastHandler& handler) { handler.toastActivated(index); });
}

bool pressBody(Toast& toast) {
    return deliver(toast, [](WinToastLib::IWinToastHandler& handler) { handler.toastActivated(); });
}

bool dismiss(Toast& toast, WinToastLib::ToastDismissalReason reason) {
    return deliver(toast, [reason](WinToastLib::IWinToastHandler& handler) { handler.toastDismissed(reason); });
}

bool failToast(Toast& toast) {
    return deliver(toast, [](WinToastLib::IWinToastHandler& handler) { handler.toastFailed(); });
}

} // namespace brisk::host

namespace WinToastLib {

using brisk::host::modelMutex;
using brisk::host::notificationArea;
using brisk::host::Toast;

WinToast& WinToast::instance() {
    static WinToast& winToast = *new WinToast;
    return winToast;
}

bool WinToast::isCompatible() {
    return GetProcAddress(nullptr, "RoGetActivationFactory") != nullptr;
}

std::wstring WinToast::configureAUMI(const std::wstring& company, const std::wstring& product,
                                     const std::wstring& subProduct, const std::wstring& version) {
    return company + L"." + product + L"." + subProduct + L"." + version;
}

bool WinToast::initialize(WinToastError* /*error*/) {
    const std::lock_guard lock(modelMutex());
    notificationArea().appName = appName;
    notificationArea().companyName = companyName;
    notificationArea().appUserModelId = appUserModelId;
    notificationArea().initialized = notificationArea().canInitialize;
    return notificationArea().initialized;
}

std::int64_t WinToast::showToast(const ToastTemplate& toast, const std::shared_ptr<IWinToastHandler>& handler,
                                 WinToastError* /*error*/) {
    const std::lock_guard lock(modelMutex());
    const std::optional<std::wstring> document = buildToastDocument(toast);
    if (!notificationArea().initialized || !handler || !document || !notificationArea().canShow) {
        return -1;
    }
    auto& all = notificationArea().all;
    const auto shown = std::make_shared<Toast>();
    shown->id = static_cast<std::int64_t>(all.size());
    shown->document = *document;
    shown->handler = handler;
    shown->release = [entry = std::weak_ptr(shown)] {
        if (const auto held = entry.lock()) {
            const std::lock_guard tableLock(modelMutex());
            held->isInTable = false;
        }
    };
    all.push_back(shown);
    notificationArea().events.push_back("Show " + std::to_string(all.size()));
    return shown->id;
}

void WinToast::clear() {
    const std::lock_guard lock(modelMutex());
    if (!notificationArea().initialized) {
        return;
    }
    for (const auto& toast : notificationArea().all) {
        if (toast->isInTable) {
            // What the user has answered is gone already.
            notificationArea().events.push_back("Hide " + std::to_string(toast->id + 1) +
                                                (toast->isShown ? "" : " -> 0x803E0107"));
            toast->isInTable = false;
            toast->isShown = false;
        }
    }
}

} // namespace WinToastLib
