#include "toast/WinToastHandler.h"

#include "base/StandardErrors.h"
#include "toast/ButtonPresses.h"

namespace brisk {

void WinToastHandler::toastActivated(int actionIndex) {
    const ButtonPresses::Press press = buttonPresses().begin();
    if (!press) {
        return;
    }
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
