// Starting processes from tests.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

#include <windows.h>

namespace brisk::testing {

// Starts the program. Wine refuses now and then for no reason that can be seen, so it is tried again for a second.
// Throws std::runtime_error with the last error.
inline PROCESS_INFORMATION startProcess(const std::filesystem::path& program, std::wstring commandLine,
                                        STARTUPINFOW startup = {}, bool inheritHandles = false, DWORD flags = 0) {
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    for (int attempt = 0; attempt < 20; ++attempt) {
        if (CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, inheritHandles, flags, nullptr,
                           nullptr, &startup, &started)) {
            return started;
        }
        if (GetLastError() == ERROR_FILE_NOT_FOUND || GetLastError() == ERROR_PATH_NOT_FOUND) {
            break;
        }
        Sleep(50);
    }
    throw std::runtime_error(program.string() + " cannot be started, error " + std::to_string(GetLastError()));
}

} // namespace brisk::testing
