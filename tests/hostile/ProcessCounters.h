#pragma once

#include <cstddef>
#include <cstdint>

namespace brisk::testing {

// What a process holds.
struct ProcessCounters {
    // Committed and not shared. Stacks are left out: Wine commits them whole, 16 MB of the service.
    std::size_t privateBytes = 0;
    std::size_t workingSet = 0;
    std::size_t peakWorkingSet = 0; // since the process began
    unsigned processHandles = 0;
    unsigned keyHandles = 0; // of the registry
    unsigned otherHandles = 0;
    unsigned gdiObjects = 0;
    unsigned windows = 0; // top-level ones, message-only ones and the children of both
    unsigned threads = 0;
};

// All zero when the process has ended.
ProcessCounters readCounters(std::uint32_t processId);
std::size_t readPeakWorkingSet(std::uint32_t processId);

} // namespace brisk::testing
