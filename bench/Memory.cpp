#include "bench/Memory.h"

#ifdef _WIN32
#include <windows.h>

#include <psapi.h>
#else
#include <fstream>
#include <string>
#endif

namespace brisk::bench {

#ifdef _WIN32
Memory readMemory() {
    // Not the private bytes: Wine does not count them.
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return {static_cast<double>(counters.WorkingSetSize), static_cast<double>(counters.PeakWorkingSetSize)};
}
#else
Memory readMemory() {
    std::ifstream status("/proc/self/status");
    Memory memory{};
    for (std::string word; status >> word;) {
        double kilobytes = 0;
        if (word == "VmRSS:" && status >> kilobytes) {
            memory.now = kilobytes * 1024;
        } else if (word == "VmHWM:" && status >> kilobytes) {
            memory.peak = kilobytes * 1024;
        }
    }
    return memory;
}
#endif

} // namespace brisk::bench
