#include "toast/WinToastHandler.h"

#include "app/StandardErrors.h"

#include <shared_mutex>

namespace brisk {

namespace {

// Shared by the callbacks that run.
std::shared_mutex& runningCallbacks() {
    // Never destroyed: late callbacks wait at it until the process is gone.
    static std::shared_mutex& mutex = *new std::shared_mutex;
    return mutex;
}

// Takes the mutex for good when the process ends: static objects that callbacks use are destroyed then, and what a
// callback has begun to write must be whole.
struct CallbacksEnd {
    ~CallbacksEnd() { runningCallbacks().lock(); }
};

} // namespace

WinToastHandler::WinToastHandler(std::vector<ToastAction> toastActions) : actions(std::move(toastActions)) {
    // Made with the first toast, later than all that its callbacks use: it is destroyed before them.
    static const CallbacksEnd callbacksEnd;
}

void WinToastHandler::toastActivated(int actionIndex) {
    const std::shared_lock running(runningCallbacks());
    {
        const std::lock_guard lock(mutex);
        actionTaken = true;
    }
    // A negative index wraps round and is out of range, too.
    const auto index = static_cast<std::size_t>(actionIndex);
    if (index >= actions.size()) {
        throwInvalidVectorSubscript();
    }
    actions[index].callback();
    std::function<void()> release;
    {
        const std::lock_guard lock(mutex);
        release = onCompleted;
    }
    if (release) {
        release();
    }
}

void WinToastHandler::toastCompleted(std::function<void()> release) {
    {
        const std::lock_guard lock(mutex);
        if (!actionTaken) {
            onCompleted = std::move(release);
            return;
        }
    }
    release();
}

} // namespace brisk
