#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace brisk::testing {

// No wait is longer: what takes longer is stuck.
inline constexpr std::chrono::seconds kLimit{20};
// How long an operation that has to wait for another is given for not waiting.
inline constexpr std::chrono::milliseconds kGracePeriod{100};

// Holds the first that comes through it until it is opened.
class Gate {
public:
    // In the thread to be held. Later calls pass.
    void pass() {
        std::unique_lock lock(mutex);
        if (reached) {
            return;
        }
        reached = true;
        changed.notify_all();
        changed.wait_for(lock, kLimit, [this] { return opened; });
    }

    // Whether a thread is held within the limit.
    bool waitUntilReached() {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, kLimit, [this] { return reached; });
    }

    void open() {
        const std::lock_guard lock(mutex);
        opened = true;
        changed.notify_all();
    }

    bool isOpen() {
        const std::lock_guard lock(mutex);
        return opened;
    }

private:
    std::mutex mutex;
    std::condition_variable changed;
    bool reached = false;
    bool opened = false;
};

} // namespace brisk::testing
