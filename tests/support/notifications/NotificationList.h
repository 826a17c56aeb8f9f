#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

#include "ToastContent.h"
#include "ToastNotification.h"
#include "ToastWindow.h"

namespace brisk::standin {

// The toasts that the user can see, on the screen or in the notification centre, and what the user does with them. Any
// thread. The operations that name a notification by number throw std::runtime_error where it is not shown. An event
// goes to the handlers that are attached when it is raised, also to one that is removed before the event thread comes
// to it.
class NotificationList {
public:
    static NotificationList& instance();

    // The number for a notification that is made now.
    unsigned nextNumber();

    // Puts a notification on the screen, anew where it is there already. E_INVALIDARG for a document without a `toast`.
    HRESULT show(ToastNotification* notification);
    // What follows from a show that has been answered: it is drawn where drawing is wished for, and counted.
    void shown(const ToastNotification* notification, const std::wstring& application);
    // Takes a notification away and raises its Dismissed event.
    HRESULT hide(ToastNotification* notification);

    std::future<EventResult> press(unsigned number, size_t button);
    std::future<EventResult> clickBody(unsigned number);
    std::future<EventResult> activate(unsigned number, const std::wstring& arguments);
    std::future<EventResult> dismiss(unsigned number, abi::DismissalReason reason);
    std::future<EventResult> fail(unsigned number, HRESULT error);

    // 0 where nothing is shown.
    unsigned lastShown();
    // One line a toast, in the order in which they were shown.
    std::string describe();
    // How many shows were counted when `count` of them were, or when `limit` had passed.
    unsigned waitForShows(unsigned count, std::chrono::milliseconds limit);
    // Forgets all toasts without any event and numbers from 1 again.
    void reset();

private:
    struct Entry {
        ComReference<ToastNotification> notification;
        std::shared_ptr<const ToastContent> content;
        bool onScreen = true;
        // Where it is drawn.
        std::unique_ptr<ToastWindow> window;
    };
    using Iterator = std::vector<Entry>::iterator;

    Iterator find(const ToastNotification* notification);
    Iterator get(unsigned number);
    Entry take(Iterator entry);

    std::mutex mutex;
    std::condition_variable showCounted;
    std::vector<Entry> entries;
    unsigned lastNumber = 0;
    unsigned shows = 0;
};

} // namespace brisk::standin
