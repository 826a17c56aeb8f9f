#pragma once

#include "base/WindowsHandles.h"

#include <cstdint>
#include <string>
#include <vector>

namespace brisk::logbook {

struct StartedProgram {
    std::uint32_t processId = 0;
    UniqueHandle process;
    UniqueHandle thread; // the first one
};

// Starts a program with its arguments, UTF-8; its first thread waits to be resumed. Throws std::runtime_error with
// Windows' number.
StartedProgram startSuspended(const std::vector<std::string>& command);

// The command line that a program of the C runtime takes apart into the same words.
std::string joinCommandLine(const std::vector<std::string>& words);

} // namespace brisk::logbook
