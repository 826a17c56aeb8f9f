#pragma once

namespace brisk::bench {

// Bytes of the process that are in memory: now, and the most so far.
struct Memory {
    double now;
    double peak;
};

Memory readMemory();

} // namespace brisk::bench
