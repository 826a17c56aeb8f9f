#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace brisk::logbook {

// What viewers of the debugger output put in front of a line.
struct CapturePrefix {
    std::string_view time; // a clock's, a date's and a clock's, or seconds; may be empty
    // In brackets, alone or in front of the thread's, behind "pid=", as Wine's first number of two, or a number behind
    // the time. A number in front of the time is the line's.
    std::optional<std::uint32_t> processId;
    bool isQuoted = false; // the line stands between quotation marks
};

CapturePrefix readCapturePrefix(std::string_view text);

} // namespace brisk::logbook
