#include "Commands.h"

#include <charconv>
#include <chrono>
#include <iterator>
#include <sstream>
#include <stdexcept>

#include "CallFailures.h"
#include "NotificationList.h"
#include "Text.h"

namespace brisk::standin {

namespace {

using std::chrono::milliseconds;

// The words of a message, taken one by one.
class Words {
public:
    explicit Words(const std::string& message) : stream(message) {}

    std::string next(const char* what) {
        std::string word;
        if (!(stream >> word)) {
            throw std::runtime_error(std::string(what) + " is missing");
        }
        return word;
    }

    unsigned long number(const char* what) {
        const std::string word = next(what);
        const bool hexadecimal = word.starts_with("0x");
        unsigned long value = 0;
        const char* end = word.data() + word.size();
        const auto [stop, error] =
            std::from_chars(word.data() + (hexadecimal ? 2 : 0), end, value, hexadecimal ? 16 : 10);
        if (error != std::errc() || stop != end) {
            throw std::runtime_error(std::string(what) + " is no number: " + word);
        }
        return value;
    }

    unsigned notification() {
        const std::istream::pos_type before = stream.tellg();
        if (next("the notification") != "last") {
            stream.seekg(before);
            return number("the notification");
        }
        const unsigned last = NotificationList::instance().lastShown();
        if (last == 0) {
            throw std::runtime_error("no notification is shown");
        }
        return last;
    }

    // Everything after the blank that ends the last word.
    std::string rest() {
        stream.get();
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    void end() {
        std::string word;
        if (stream >> word) {
            throw std::runtime_error("more than the command takes: " + word);
        }
    }

private:
    std::istringstream stream;
};

std::string resultOf(std::future<EventResult> event, milliseconds limit) {
    if (event.wait_for(limit) != std::future_status::ready) {
        throw std::runtime_error("the handlers did not return within " + std::to_string(limit.count()) + " ms");
    }
    const EventResult result = event.get();
    return std::to_string(result.handlers) + " " + hresultText(result.result);
}

std::string raiseEvent(const std::string& command, Words& words, milliseconds limit) {
    NotificationList& list = NotificationList::instance();
    const unsigned notification = words.notification();
    if (command == "activate") {
        return resultOf(list.activate(notification, fromUtf8(words.rest())), limit);
    }
    if (command == "body") {
        words.end();
        return resultOf(list.clickBody(notification), limit);
    }
    const unsigned long number = words.number(command == "press"     ? "the button"
                                              : command == "dismiss" ? "the reason"
                                                                     : "the error");
    words.end();
    if (command == "press") {
        return resultOf(list.press(notification, number), limit);
    }
    if (command == "fail") {
        return resultOf(list.fail(notification, static_cast<HRESULT>(number)), limit);
    }
    if (number > 2) {
        throw std::runtime_error("the reason is not 0, 1 or 2: " + std::to_string(number));
    }
    return resultOf(list.dismiss(notification, static_cast<abi::DismissalReason>(number)), limit);
}

void waitUntilIdle(milliseconds limit) {
    if (!EventThread::instance().waitUntilIdle(limit)) {
        throw std::runtime_error("events are still being delivered after " + std::to_string(limit.count()) + " ms");
    }
}

std::string output(const std::string& command, Words& words, milliseconds limit) {
    if (command == "press" || command == "body" || command == "activate" || command == "dismiss" || command == "fail") {
        return raiseEvent(command, words, limit);
    }
    if (command == "failures") {
        CallFailures::instance().set(words.rest());
        return {};
    }
    if (command == "wait") {
        const unsigned long count = words.number("the count");
        words.end();
        const unsigned shows = NotificationList::instance().waitForShows(count, limit);
        if (shows < count) {
            throw std::runtime_error(std::to_string(shows) + " of " + std::to_string(count) +
                                     " toasts were shown within " + std::to_string(limit.count()) + " ms");
        }
        return {};
    }
    words.end();
    if (command == "list") {
        return NotificationList::instance().describe();
    }
    if (command == "objects") {
        return std::to_string(liveObjects);
    }
    if (command == "idle") {
        waitUntilIdle(limit);
        return {};
    }
    if (command == "reset") {
        waitUntilIdle(limit);
        NotificationList::instance().reset();
        CallFailures::instance().set("");
        return {};
    }
    throw std::runtime_error("unknown command: " + command);
}

} // namespace

std::string carryOut(const std::string& message) {
    try {
        Words words(message);
        const milliseconds limit(words.number("the limit"));
        const std::string command = words.next("the command");
        return "ok\n" + output(command, words, limit);
    } catch (const std::runtime_error& error) {
        return std::string("error ") + error.what();
    }
}

} // namespace brisk::standin
