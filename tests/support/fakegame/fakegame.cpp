// A stand-in for a game: one window over the whole screen and a process that ends when it is told to. --help tells how
// it is driven from a script; tests drive it with FakeGame.
#include "support/fakegame/FakeGameContract.h"
#include "support/fakegame/Scene.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace brisk {

namespace {

constexpr DWORD kLimitMilliseconds = 10'000;

constexpr char kHelp[] = "fakegame: runs a fake game until it is told to end, or talks to the one that runs.\n"
                         "\n"
                         "usage: fakegame                        run, the window in the foreground\n"
                         "       fakegame --hold FILE            the same, while nobody else can write the file\n"
                         "       fakegame --send pid             print the running game's process id (decimal)\n"
                         "       fakegame --send take            put the game's window in the foreground\n"
                         "       fakegame --send give            put the desktop in the foreground instead\n"
                         "       fakegame --send none            leave no window in the foreground\n"
                         "       fakegame --send end [EXITCODE]  end the game in good order\n"
                         "       fakegame --send die [EXITCODE]  end the game on the spot\n"
                         "\n"
                         "--send waits until there is a game and what it asked for has come about, each for at most\n"
                         "10 seconds. Exit code: 0 done, 1 it did not come about, 2 wrong usage. Of several games the\n"
                         "topmost is meant.\n";

LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case FakeGameTakeForeground:
        UpdateWindow(window); // who photographs the screen next finds the picture there
        return SetForegroundWindow(window) != FALSE;
    case FakeGameGiveForeground:
        return SetForegroundWindow(reinterpret_cast<HWND>(lParam)) != FALSE;
    case FakeGameLeaveNoForeground:
        SetActiveWindow(nullptr);
        return 1;
    case FakeGameEnd:
        DestroyWindow(window);
        PostQuitMessage(static_cast<int>(wParam));
        return 0;
    case FakeGameDie:
        TerminateProcess(GetCurrentProcess(), static_cast<UINT>(wParam));
        return 0;
    case WM_CLOSE:
        PostMessageA(window, FakeGameEnd, 0, 0);
        return 0;
    case WM_PAINT: {
        PAINTSTRUCT paint;
        paintScene(BeginPaint(window, &paint), GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN));
        EndPaint(window, &paint);
        return 0;
    }
    default:
        return DefWindowProcA(window, message, wParam, lParam);
    }
}

int play(HINSTANCE instance) {
    WNDCLASSA windowClass{};
    windowClass.lpfnWndProc = windowProcedure;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorA(nullptr, MAKEINTRESOURCEA(32512)); // the arrow
    windowClass.lpszClassName = kFakeGameClass;
    RegisterClassA(&windowClass);
    const HWND window = CreateWindowExA(0, kFakeGameClass, FAKE_GAME_PRODUCT, WS_POPUP | WS_VISIBLE, 0, 0,
                                        GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN), nullptr, nullptr,
                                        instance, nullptr);
    if (!window) {
        return EXIT_FAILURE;
    }
    SetForegroundWindow(window);
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        DispatchMessageA(&message);
    }
    return static_cast<int>(message.wParam);
}

// Whether `condition` held within the limit.
template <class Condition>
bool waitUntil(Condition condition) {
    const ULONGLONG end = GetTickCount64() + kLimitMilliseconds;
    while (!condition()) {
        if (GetTickCount64() >= end) {
            return false;
        }
        Sleep(5);
    }
    return true;
}

bool ask(HWND window, UINT message, HWND parameter = nullptr) {
    DWORD_PTR answer = 0;
    return SendMessageTimeoutA(window, message, 0, reinterpret_cast<LPARAM>(parameter), SMTO_ABORTIFHUNG,
                               kLimitMilliseconds, &answer) &&
           answer == 1;
}

bool endGame(HWND window, UINT message, WPARAM exitCode, DWORD processId) {
    const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, processId);
    const bool ended = process && PostMessageA(window, message, exitCode, 0) &&
                       WaitForSingleObject(process, kLimitMilliseconds) == WAIT_OBJECT_0;
    CloseHandle(process);
    return ended;
}

bool send(HWND window, const std::string& command, WPARAM exitCode) {
    DWORD processId = 0;
    GetWindowThreadProcessId(window, &processId);
    if (command == "pid") {
        std::printf("%lu\n", processId);
        return true;
    }
    if (command == "take") {
        return ask(window, FakeGameTakeForeground) && waitUntil([&] { return GetForegroundWindow() == window; });
    }
    if (command == "give") {
        const HWND desktop = GetDesktopWindow();
        return ask(window, FakeGameGiveForeground, desktop) &&
               waitUntil([&] { return GetForegroundWindow() == desktop; });
    }
    if (command == "none") {
        return ask(window, FakeGameTakeForeground) && ask(window, FakeGameLeaveNoForeground) &&
               waitUntil([] { return !GetForegroundWindow(); });
    }
    return endGame(window, command == "end" ? FakeGameEnd : FakeGameDie, exitCode, processId);
}

int talk(const std::vector<std::string>& arguments) {
    const std::string command = arguments.size() > 1 ? arguments[1] : "";
    const bool ends = command == "end" || command == "die";
    const bool known = ends || command == "pid" || command == "take" || command == "give" || command == "none";
    if (arguments[0] != "--send" || !known || arguments.size() > (ends ? 3U : 2U)) {
        std::fputs(kHelp, stderr);
        return 2;
    }
    const WPARAM exitCode = arguments.size() > 2 ? std::strtoul(arguments[2].c_str(), nullptr, 0) : 0;
    HWND window = nullptr;
    if (!waitUntil([&] { return (window = FindWindowA(kFakeGameClass, nullptr)) != nullptr; })) {
        std::fputs("fakegame: no game is running\n", stderr);
        return EXIT_FAILURE;
    }
    if (!send(window, command, exitCode)) {
        std::fprintf(stderr, "fakegame: '%s' did not come about\n", command.c_str());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}

} // namespace

} // namespace brisk

int WINAPI WinMain(HINSTANCE instance, HINSTANCE /*previous*/, LPSTR /*commandLine*/, int /*show*/) {
    const std::vector<std::string> arguments(__argv + 1, __argv + __argc);
    if (arguments.empty()) {
        return brisk::play(instance);
    }
    if (arguments.size() == 2 && arguments[0] == "--hold") {
        // Held until the process ends.
        const HANDLE file = CreateFileA(arguments[1].c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                        OPEN_EXISTING, 0, nullptr);
        return file == INVALID_HANDLE_VALUE ? EXIT_FAILURE : brisk::play(instance);
    }
    if (arguments[0] == "--help") {
        std::fputs(brisk::kHelp, stdout);
        return EXIT_SUCCESS;
    }
    return brisk::talk(arguments);
}
