#pragma once

#include "toast/IWinToastHandler.h"

#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace brisk {

// One button of a toast.
struct ToastAction {
    std::string label;
    std::function<void()> callback; // runs on the notification system's thread
};

// Runs the pressed button's callback. The toast's resources are held until a button was pressed: Windows may keep a
// dismissed toast where its buttons can still be pressed.
class WinToastHandler final : public WinToastLib::IWinToastHandler {
public:
    explicit WinToastHandler(std::vector<ToastAction> toastActions) : actions(std::move(toastActions)) {}

    // Throws std::out_of_range "invalid vector subscript" for an index that no button has, std::bad_function_call for a
    // button without a callback, and whatever the callback throws. Does nothing once ButtonPresses have ended.
    void toastActivated(int actionIndex) override;
    void toastActivated() override {}
    void toastDismissed(WinToastLib::ToastDismissalReason /*reason*/) override {}
    void toastFailed() override {}
    void toastCompleted(std::function<void()> release) override;

private:
    // Events of one toast may arrive on several threads. Not held while a callback or a release action runs.
    std::mutex mutex;
    bool actionTaken = false;
    std::vector<ToastAction> actions;
    std::function<void()> onCompleted;
};

} // namespace brisk
