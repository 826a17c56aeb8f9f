#include "toast/ButtonPresses.h"

#include <mutex>

namespace brisk {

ButtonPresses& buttonPresses() {
    static ButtonPresses& presses = *new ButtonPresses;
    return presses;
}

ButtonPresses::Press ButtonPresses::begin() {
    Press press(mutex);
    if (ended) {
        press.unlock();
    }
    return press;
}

void ButtonPresses::end() {
    // Before the lock: presses must not slip in while others are waited for.
    ended = true;
    const std::lock_guard allOthers(mutex);
}

} // namespace brisk
