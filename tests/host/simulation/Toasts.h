// The notification area: what the model of the toast helper has shown, and the user's hand on it.
#pragma once

#include "toast/IWinToastHandler.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace brisk::host {

struct Toast {
    std::int64_t id = 0;
    std::wstring document;
    std::shared_ptr<WinToastLib::IWinToastHandler> handler;
    bool isShown = true;      // hidden by the program otherwise
    bool isDismissed = false; // by the user; it stays in the notification centre
    bool isInTable = true;    // not released yet
    std::function<void()> release;
};

struct NotificationArea {
    bool canInitialize = true;
    bool canShow = true;
    bool initialized = false;
    std::wstring appName;
    std::wstring companyName;
    std::wstring appUserModelId;
    std::vector<std::shared_ptr<Toast>> all; // shown so far, in order
    std::vector<std::string> events;         // "Show 1", "Hide 1", "Activated 1 0", counted from 1

    // Those that are on screen or in the notification centre.
    std::vector<std::shared_ptr<Toast>> shown() const;
};

NotificationArea& notificationArea();

// The three events of a toast, on the caller's thread. They reach the handler also after the program has hidden the
// toast, as an event does that is already on its way. False when the handler threw.
bool pressButton(Toast& toast, int index);
bool pressBody(Toast& toast);
bool dismiss(Toast& toast, WinToastLib::ToastDismissalReason reason);
bool failToast(Toast& toast);

} // namespace brisk::host
