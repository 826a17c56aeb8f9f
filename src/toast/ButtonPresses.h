#pragma once

#include <atomic>
#include <shared_mutex>

namespace brisk {

// Whether buttons still do anything: the end of the process must neither cut a settings file short nor let an action
// begin that cannot finish.
class ButtonPresses {
public:
    using Press = std::shared_lock<std::shared_mutex>;

    // The press lasts as long as what is returned. Empty once the end has come: then the press has no effect at all.
    // Any thread; presses do not wait for each other.
    Press begin();

    // Waits for the presses that have begun; from now on none begins. Not to be called during a press.
    void end();

private:
    std::shared_mutex mutex;
    std::atomic<bool> ended = false;
};

// The process's own, never destroyed: a button may be pressed as long as the process lives.
ButtonPresses& buttonPresses();

} // namespace brisk
