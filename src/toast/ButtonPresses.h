#pragma once

#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>

namespace brisk {

// Whether buttons still do anything: the end of the process must neither cut a settings file short nor let an action
// begin that cannot finish.
class ButtonPresses {
    struct Finish {
        void operator()(ButtonPresses* presses) const;
    };

public:
    using Press = std::unique_ptr<ButtonPresses, Finish>;

    // The press lasts as long as what is returned. Empty once the end has come: then the press has no effect at all.
    // Any thread; presses do not wait for each other.
    Press begin();

    // Waits for the presses that have begun; from now on none begins. Not to be called during a press.
    void end();

private:
    // No shared mutex: MinGW's lets a writer in while readers are there, one time in ten on a busy machine.
    std::mutex mutex;
    std::condition_variable finished;
    std::size_t running = 0;
    bool ended = false;
};

// The process's own, never destroyed: a button may be pressed as long as the process lives.
ButtonPresses& buttonPresses();

} // namespace brisk
