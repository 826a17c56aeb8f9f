#pragma once

#include <cstddef>
#include <cstdint>

namespace brisk::testing {

// What a process holds.
struct ProcessCounters {
    std::size_t privateBytes = 0;
    std::size_t peakBytes = 0; // of the working set, since the process began
    unsigned handles = 0;
    unsigned gdiObjects = 0;
    unsigned windows = 0; // top-level ones, message-only ones and the children of both
    unsigned threads = 0;
};

// All zero when the process has ended.
ProcessCounters readCounters(std::uint32_t processId);

} // namespace brisk::testing
