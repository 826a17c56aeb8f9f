#pragma once

#include <functional>

namespace WinToastLib {

// Why a toast went away; the numbers are Windows'.
enum class ToastDismissalReason { UserCanceled = 0, ApplicationHidden = 1, TimedOut = 2 };

// Receives one toast's events, on the notification system's threads. An exception becomes the event's failure code.
class IWinToastHandler {
public:
    virtual ~IWinToastHandler() = default;
    virtual void toastActivated(int actionIndex) = 0; // a button, counted from 0
    virtual void toastActivated() = 0;                // the body
    virtual void toastDismissed(ToastDismissalReason reason) = 0;
    virtual void toastFailed() = 0;
    // After each event: the action that releases the toast's resources, to be run once the handler is done with it.
    virtual void toastCompleted(std::function<void()> release) = 0;
};

} // namespace WinToastLib
