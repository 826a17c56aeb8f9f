#include "NotificationList.h"

#include <algorithm>
#include <stdexcept>

#include "CallRecord.h"
#include "NotificationStandin.h"
#include "Text.h"

namespace brisk::standin {

namespace {

// "The notification cannot be hidden until it has been shown" and "... has already been hidden": the platform's own
// codes, which the cross compiler's headers do not have.
constexpr HRESULT kNotificationNotPosted = static_cast<HRESULT>(0x803E0108);
constexpr HRESULT kNotificationHidden = static_cast<HRESULT>(0x803E0107);

// A click on a toast that is being taken away at the same moment finds it gone.
template <class React>
std::function<void(size_t)> ignoringGoneToasts(React react) {
    return [react](size_t button) {
        try {
            react(button);
        } catch (const std::runtime_error&) {
        }
    };
}

} // namespace

NotificationList& NotificationList::instance() {
    // Never destroyed: threads may still use it while the process ends.
    static NotificationList& list = *new NotificationList;
    return list;
}

unsigned NotificationList::nextNumber() {
    std::lock_guard lock(mutex);
    return ++lastNumber;
}

HRESULT NotificationList::show(ToastNotification* notification) {
    const std::shared_ptr<const XmlElement> toast = notification->toastElement();
    if (!toast) {
        return E_INVALIDARG;
    }
    notification->AddRef();
    Entry entry{ComReference<ToastNotification>(notification), std::make_shared<ToastContent>(readToast(*toast)), true,
                nullptr};
    notification->everShown = true;
    Entry replaced;
    std::lock_guard lock(mutex);
    if (const auto same = find(notification); same != entries.end()) {
        replaced = take(same);
    }
    entries.push_back(std::move(entry));
    return S_OK;
}

void NotificationList::shown(const ToastNotification* notification, const std::wstring& application) {
    std::lock_guard lock(mutex);
    ++shows;
    showCounted.notify_all();
    const auto entry = find(notification);
    if (entry == entries.end() || environmentVariable(kDrawVariable) != L"1") {
        return;
    }
    const unsigned number = notification->getNumber();
    ToastReactions reactions;
    reactions.button = ignoringGoneToasts([this, number](size_t button) { press(number, button); });
    reactions.body = ignoringGoneToasts([this, number](size_t) { clickBody(number); });
    reactions.close =
        ignoringGoneToasts([this, number](size_t) { dismiss(number, abi::DismissalReason::UserCanceled); });
    entry->window = std::make_unique<ToastWindow>(number, entry->content, application, std::move(reactions));
}

HRESULT NotificationList::hide(ToastNotification* notification) {
    Entry hidden;
    std::lock_guard lock(mutex);
    const auto entry = find(notification);
    if (entry == entries.end()) {
        return notification->everShown ? kNotificationHidden : kNotificationNotPosted;
    }
    hidden = take(entry);
    notification->raiseDismissed(abi::DismissalReason::ApplicationHidden);
    return S_OK;
}

std::future<EventResult> NotificationList::press(unsigned number, size_t button) {
    Entry pressed;
    std::lock_guard lock(mutex);
    const auto entry = get(number);
    const std::vector<ToastAction>& actions = entry->content->actions;
    if (button >= actions.size()) {
        throw std::runtime_error("notification " + std::to_string(number) + " has no button " + std::to_string(button) +
                                 ", it has " + std::to_string(actions.size()));
    }
    const std::wstring arguments = actions[button].arguments;
    pressed = take(entry);
    recordLine("Activated " + std::to_string(number) + " " + escaped(arguments));
    return pressed.notification->raiseActivated(arguments);
}

std::future<EventResult> NotificationList::clickBody(unsigned number) {
    Entry clicked;
    std::lock_guard lock(mutex);
    clicked = take(get(number));
    recordLine("Activated " + std::to_string(number) + " " + escaped(clicked.content->launch));
    return clicked.notification->raiseActivated(clicked.content->launch);
}

std::future<EventResult> NotificationList::activate(unsigned number, const std::wstring& arguments) {
    std::lock_guard lock(mutex);
    const auto entry = get(number);
    recordLine("Activated " + std::to_string(number) + " " + escaped(arguments));
    return entry->notification->raiseActivated(arguments);
}

std::future<EventResult> NotificationList::dismiss(unsigned number, abi::DismissalReason reason) {
    Entry dismissed;
    std::lock_guard lock(mutex);
    const auto entry = get(number);
    recordLine("Dismissed " + std::to_string(number) + " " + std::to_string(static_cast<INT32>(reason)));
    std::future<EventResult> result = entry->notification->raiseDismissed(reason);
    if (reason == abi::DismissalReason::ApplicationHidden) {
        dismissed = take(entry);
    } else {
        entry->onScreen = false;
        entry->window.reset();
    }
    return result;
}

std::future<EventResult> NotificationList::fail(unsigned number, HRESULT error) {
    Entry failed;
    std::lock_guard lock(mutex);
    failed = take(get(number));
    recordLine("Failed " + std::to_string(number) + " " + hresultText(error));
    return failed.notification->raiseFailed(error);
}

unsigned NotificationList::lastShown() {
    std::lock_guard lock(mutex);
    return entries.empty() ? 0 : entries.back().notification->getNumber();
}

std::string NotificationList::describe() {
    std::lock_guard lock(mutex);
    std::string text;
    for (const Entry& entry : entries) {
        text += std::to_string(entry.notification->getNumber()) + (entry.onScreen ? " screen " : " centre ") +
                escaped(entry.content->title());
        for (const ToastAction& action : entry.content->actions) {
            text += " | " + escaped(action.label);
        }
        text += "\n";
    }
    return text;
}

unsigned NotificationList::waitForShows(unsigned count, std::chrono::milliseconds limit) {
    std::unique_lock lock(mutex);
    showCounted.wait_for(lock, limit, [&] { return shows >= count; });
    return shows;
}

void NotificationList::reset() {
    std::vector<Entry> forgotten;
    std::lock_guard lock(mutex);
    forgotten.swap(entries);
    lastNumber = 0;
    shows = 0;
}

NotificationList::Iterator NotificationList::find(const ToastNotification* notification) {
    return std::ranges::find_if(entries, [&](const Entry& entry) { return entry.notification.get() == notification; });
}

NotificationList::Iterator NotificationList::get(unsigned number) {
    const auto entry = std::ranges::find_if(
        entries, [&](const Entry& candidate) { return candidate.notification->getNumber() == number; });
    if (entry == entries.end()) {
        throw std::runtime_error("notification " + std::to_string(number) + " is not shown");
    }
    return entry;
}

// The caller lets the entry go after the lock: its last reference may call into the application.
NotificationList::Entry NotificationList::take(Iterator entry) {
    Entry taken = std::move(*entry);
    entries.erase(entry);
    return taken;
}

} // namespace brisk::standin
