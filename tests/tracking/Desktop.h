// The window manager and the processes as a test sets them.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <windows.h>

namespace brisk::testing {

// Answers the calls of FaultPoints.h while it lives. At first the game runs in the foreground.
class Desktop {
public:
    Desktop();
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    static constexpr DWORD kGame = 0x1F4;  // its process id
    static constexpr DWORD kOther = 0x2B8; // another process's
    static inline const HWND kGameWindow = reinterpret_cast<HWND>(std::uintptr_t{0x30A2});
    static inline const HANDLE kGameHandle = reinterpret_cast<HANDLE>(std::uintptr_t{0xF00});
    static inline const HWND kServiceWindow = reinterpret_cast<HWND>(std::uintptr_t{0x40});

    HWND foreground = kGameWindow;
    DWORD foregroundProcess = kGame;
    bool isForegroundAWindow = true;
    // Of the process that was opened for tracking.
    bool canOpen = true;
    bool hasExitCode = true;
    DWORD exitCode = STILL_ACTIVE;
    // The foreground process's executable; an empty path: the process cannot be identified.
    std::string executable;
    std::string publisher;

    // The calls that change something, in order and with their arguments, since the last take.
    std::vector<std::string> takeCalls();
    // The file whose properties were asked last.
    std::string askedFile;

private:
    std::vector<std::string> calls;
};

} // namespace brisk::testing
