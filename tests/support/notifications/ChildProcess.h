#pragma once

#include <string>

#include <windows.h>

namespace brisk::standin {

struct ProcessResult {
    DWORD exitCode;
    // What it wrote to both of its streams, lines ended by "\n".
    std::string output;
};

// Runs a program that writes no more than 64 KB to its end, for 20 seconds at most; throws std::runtime_error where
// that fails.
ProcessResult runProcess(std::wstring commandLine);

} // namespace brisk::standin
