#include "toast/ButtonPresses.h"

namespace brisk {

ButtonPresses& buttonPresses() {
    static ButtonPresses& presses = *new ButtonPresses;
    return presses;
}

void ButtonPresses::Finish::operator()(ButtonPresses* presses) const {
    // Told under the lock: who waits may end the process right after it.
    const std::lock_guard lock(presses->mutex);
    --presses->running;
    presses->finished.notify_all();
}

ButtonPresses::Press ButtonPresses::begin() {
    const std::lock_guard lock(mutex);
    if (ended) {
        return nullptr;
    }
    ++running;
    return Press(this);
}

void ButtonPresses::end() {
    std::unique_lock lock(mutex);
    ended = true;
    finished.wait(lock, [this] { return running == 0; });
}

} // namespace brisk
