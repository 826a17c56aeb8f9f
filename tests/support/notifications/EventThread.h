#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <mutex>

#include <windows.h>

namespace brisk::standin {

// What the handlers of one event did.
struct EventResult {
    unsigned handlers = 0;
    // The first failure a handler answered, or S_OK.
    HRESULT result = S_OK;
};

// The one thread (multithreaded apartment) on which all events reach their handlers, one after the other.
class EventThread {
public:
    // Started at first use, never ended.
    static EventThread& instance();

    // Queues a delivery; whoever does not care for its result may drop the future.
    std::future<EventResult> post(std::function<EventResult()> delivery);
    // False when events are still being delivered after `limit`.
    bool waitUntilIdle(std::chrono::milliseconds limit);

private:
    EventThread();
    void run();

    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::packaged_task<EventResult()>> queue;
    bool busy = false;
};

} // namespace brisk::standin
