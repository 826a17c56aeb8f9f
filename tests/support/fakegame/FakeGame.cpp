#include "support/fakegame/FakeGame.h"

#include "support/Places.h"
#include "support/Processes.h"

#include <stdexcept>
#include <string>

namespace brisk {

namespace {

constexpr DWORD kLimitMilliseconds = 10'000;
constexpr UINT kKilledExitCode = 1;

[[noreturn]] void fail(const std::string& what) {
    throw std::runtime_error("fake game: " + what);
}

// Messages sent to windows of the calling thread are delivered meanwhile: one of them may be getting the foreground.
template <class Condition>
void waitUntil(Condition condition, const char* what) {
    const ULONGLONG end = GetTickCount64() + kLimitMilliseconds;
    while (!condition()) {
        if (GetTickCount64() >= end) {
            fail(std::string("waited in vain until ") + what);
        }
        MSG message;
        PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
        Sleep(2);
    }
}

HWND findWindow(DWORD processId) {
    HWND window = nullptr;
    while ((window = FindWindowExA(nullptr, window, kFakeGameClass, nullptr)) != nullptr) {
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        if (owner == processId && IsWindowVisible(window)) {
            return window;
        }
    }
    return nullptr;
}

} // namespace

std::filesystem::path FakeGame::executable() {
    return testing::place(BRISK_FAKE_GAME);
}

std::filesystem::path FakeGame::plainExecutable() {
    return testing::place(BRISK_FAKE_GAME_PLAIN);
}

std::filesystem::path FakeGame::install(const std::filesystem::path& program, const std::filesystem::path& target) {
    std::filesystem::create_directories(target.parent_path());
    if (!CopyFileW(program.c_str(), target.c_str(), FALSE)) {
        fail("not copied, error " + std::to_string(GetLastError()));
    }
    return target;
}

FakeGame::FakeGame(const std::filesystem::path& program) {
    const PROCESS_INFORMATION information = testing::startProcess(program, L"\"" + program.native() + L"\"");
    CloseHandle(information.hThread);
    process.reset(information.hProcess);
    id = information.dwProcessId;
    try {
        waitUntil([this] { return (gameWindow = findWindow(id)) != nullptr; }, "the window appears");
        takeForeground();
    } catch (...) {
        TerminateProcess(process.get(), kKilledExitCode);
        throw;
    }
}

FakeGame::~FakeGame() {
    TerminateProcess(process.get(), kKilledExitCode);
    WaitForSingleObject(process.get(), kLimitMilliseconds);
}

void FakeGame::takeForeground() {
    AllowSetForegroundWindow(id); // whoever holds the foreground may pass it on
    request(FakeGameTakeForeground);
    waitUntil([this] { return GetForegroundWindow() == gameWindow; }, "the game is in the foreground");
}

void FakeGame::giveForegroundAway() {
    const HWND desktop = GetDesktopWindow();
    request(FakeGameGiveForeground, desktop);
    waitUntil([desktop] { return GetForegroundWindow() == desktop; }, "the desktop is in the foreground");
}

std::uint32_t FakeGame::end(std::uint32_t exitCode) {
    return endWith(FakeGameEnd, exitCode);
}

std::uint32_t FakeGame::die(std::uint32_t exitCode) {
    return endWith(FakeGameDie, exitCode);
}

void FakeGame::request(UINT message, HWND other) {
    DWORD_PTR answer = 0;
    if (!SendMessageTimeoutA(gameWindow, message, 0, reinterpret_cast<LPARAM>(other), SMTO_ABORTIFHUNG,
                             kLimitMilliseconds, &answer) ||
        answer != 1) {
        fail("request " + std::to_string(message - WM_APP) + " was refused");
    }
}

std::uint32_t FakeGame::endWith(UINT message, std::uint32_t exitCode) {
    PostMessageA(gameWindow, message, exitCode, 0);
    if (WaitForSingleObject(process.get(), kLimitMilliseconds) != WAIT_OBJECT_0) {
        fail("waited in vain until the process ends");
    }
    DWORD actual = 0;
    GetExitCodeProcess(process.get(), &actual);
    return actual;
}

} // namespace brisk
