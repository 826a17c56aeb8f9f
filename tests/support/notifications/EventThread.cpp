#include "EventThread.h"

#include <objbase.h>

#include "OwnThread.h"

namespace brisk::standin {

EventThread& EventThread::instance() {
    // Never destroyed: the thread runs until the process ends.
    static EventThread& thread = *new EventThread;
    return thread;
}

EventThread::EventThread() {
    startThread([this] { run(); });
}

std::future<EventResult> EventThread::post(std::function<EventResult()> delivery) {
    std::packaged_task<EventResult()> task(std::move(delivery));
    std::future<EventResult> result = task.get_future();
    std::lock_guard lock(mutex);
    queue.push_back(std::move(task));
    changed.notify_all();
    return result;
}

bool EventThread::waitUntilIdle(std::chrono::milliseconds limit) {
    std::unique_lock lock(mutex);
    return changed.wait_for(lock, limit, [this] { return queue.empty() && !busy; });
}

void EventThread::run() {
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    std::unique_lock lock(mutex);
    for (;;) {
        changed.wait(lock, [this] { return !queue.empty(); });
        busy = true;
        {
            std::packaged_task<EventResult()> task = std::move(queue.front());
            queue.pop_front();
            lock.unlock();
            task();
            // The task goes before the thread counts as idle: it holds the references that leak tests count.
        }
        lock.lock();
        busy = false;
        changed.notify_all();
    }
}

} // namespace brisk::standin
