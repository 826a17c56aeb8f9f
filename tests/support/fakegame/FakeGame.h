#pragma once

#include "base/WindowsHandles.h"
#include "support/fakegame/FakeGameContract.h"

#include <cstdint>
#include <filesystem>

namespace brisk {

// A running fake game: a process of its own with a window over the whole screen. Every operation returns when its
// effect can be seen from this process, or throws std::runtime_error after ten seconds. One thread at a time.
class FakeGame {
public:
    // The program with a version resource (the names of FakeGameContract.h) and the same program without one.
    static std::filesystem::path executable();
    static std::filesystem::path plainExecutable();
    // Copies a program to another place and name, making the folders that are missing. Gives `target`.
    static std::filesystem::path install(const std::filesystem::path& program, const std::filesystem::path& target);

    // Starts a program; returns with its window in the foreground.
    explicit FakeGame(const std::filesystem::path& program = executable());
    FakeGame(const FakeGame&) = delete;
    FakeGame& operator=(const FakeGame&) = delete;
    // Ends the process if it still runs.
    ~FakeGame();

    std::uint32_t processId() const { return id; }
    // The game's window; no longer a window once the game has ended.
    HWND window() const { return gameWindow; }

    void takeForeground();
    // The desktop is in the foreground afterwards.
    void giveForegroundAway();

    // End the game in good order, or on the spot with nothing cleaned up. Give the process's exit code.
    std::uint32_t end(std::uint32_t exitCode = 0);
    std::uint32_t die(std::uint32_t exitCode = 1);

private:
    void request(UINT message, HWND other = nullptr);
    std::uint32_t endWith(UINT message, std::uint32_t exitCode);

    UniqueHandle process;
    std::uint32_t id = 0;
    HWND gameWindow = nullptr;
};

} // namespace brisk
