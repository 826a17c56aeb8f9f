#pragma once

#include "toast/DynamicFunctions.h"
#include "toast/IWinToastHandler.h"
#include "toast/NotificationInterfaces.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace WinToastLib {

// The registrations of one notification's three events.
struct ToastEventTokens {
    EventRegistrationToken activated{};
    EventRegistrationToken dismissed{};
    EventRegistrationToken failed{};
};

// Connects a notification's events with the handler, which the connection keeps alive. After each event the handler
// receives the release action. expirationTime: 100-ns units since 1601, 0 for none.
HRESULT attachEvents(const DynamicFunctions& functions, abi::IToastNotification& notification,
                     const std::shared_ptr<IWinToastHandler>& handler, std::int64_t expirationTime,
                     const std::function<void()>& release, ToastEventTokens& tokens);

void detachEvents(abi::IToastNotification& notification, const ToastEventTokens& tokens);

// The system's clock in the same units.
std::int64_t getSystemTime();

} // namespace WinToastLib
