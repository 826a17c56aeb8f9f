#include "support/notifications/NotificationStandinControl.h"

#include "host/simulation/SimulatedCall.h"

#include <stdexcept>

namespace brisk::standin {

namespace {

std::shared_ptr<host::Toast> find(unsigned number) {
    const std::lock_guard lock(host::modelMutex());
    const auto& all = host::notificationArea().all;
    if (number == 0 || number > all.size() || !all[number - 1]->isShown) {
        throw std::runtime_error("no toast " + std::to_string(number));
    }
    return all[number - 1];
}

std::string titleOf(const host::Toast& toast) {
    const std::wstring& document = toast.document;
    const std::size_t begin = document.find(L"<text>") + 6;
    const std::size_t end = document.find(L"</text>", begin);
    return {document.begin() + static_cast<std::ptrdiff_t>(begin), document.begin() + static_cast<std::ptrdiff_t>(end)};
}

void record(const char* event, unsigned number, unsigned detail) {
    const std::lock_guard lock(host::modelMutex());
    host::notificationArea().events.push_back(std::string(event) + " " + std::to_string(number) + " " +
                                              std::to_string(detail));
}

// Events are delivered one after the other.
template <class Event>
NotificationStandinControl::EventResult deliver(const Event& event) {
    static std::mutex mutex;
    const std::lock_guard lock(mutex);
    return {1, event() ? S_OK : E_FAIL};
}

} // namespace

std::vector<std::string> NotificationStandinControl::list() const {
    const std::lock_guard lock(host::modelMutex());
    std::vector<std::string> lines;
    for (const auto& toast : host::notificationArea().shown()) {
        lines.push_back(std::to_string(toast->id + 1) + (toast->isDismissed ? " centre " : " screen ") +
                        titleOf(*toast));
    }
    return lines;
}

NotificationStandinControl::EventResult NotificationStandinControl::press(unsigned number, unsigned button,
                                                                          std::chrono::milliseconds /*limit*/) const {
    const auto toast = find(number);
    {
        const std::lock_guard lock(host::modelMutex());
        // A pressed toast goes away.
        toast->isShown = false;
    }
    record("Activated", number, button);
    return deliver([&] { return host::pressButton(*toast, static_cast<int>(button)); });
}

NotificationStandinControl::EventResult NotificationStandinControl::dismiss(unsigned number, unsigned reason,
                                                                            std::chrono::milliseconds /*limit*/) const {
    const auto toast = find(number);
    {
        const std::lock_guard lock(host::modelMutex());
        toast->isDismissed = true;
    }
    record("Dismissed", number, reason);
    return deliver([&] { return host::dismiss(*toast, static_cast<WinToastLib::ToastDismissalReason>(reason)); });
}

NotificationStandinControl::EventResult
NotificationStandinControl::activate(unsigned number, const std::string& arguments,
                                     std::chrono::milliseconds /*limit*/) const {
    const auto toast = find(number);
    const int button = std::stoi(arguments);
    record("Activated", number, static_cast<unsigned>(button));
    return deliver([&] { return host::pressButton(*toast, button); });
}

void NotificationStandinControl::setFailures(const std::string& rules) const {
    if (!rules.starts_with("Show=")) {
        throw std::runtime_error("not simulated: " + rules);
    }
    const std::lock_guard lock(host::modelMutex());
    host::notificationArea().canShow = false;
}

void NotificationStandinControl::reset() const {
    const std::lock_guard lock(host::modelMutex());
    host::notificationArea().all.clear();
    host::notificationArea().events.clear();
    host::notificationArea().canShow = true;
}

} // namespace brisk::standin
