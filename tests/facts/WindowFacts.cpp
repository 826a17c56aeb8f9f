// Timers, and what a hidden window is sent from outside.
#include "Facts.h"
#include "OwnProcess.h"

#include "base/TextEncoding.h"
#include "support/TextFiles.h"

#include <fstream>

namespace brisk::facts {

namespace {

constexpr wchar_t kWindowClass[] = L"BriskWindowsFacts";
constexpr DWORD kClosed = 40;
constexpr DWORD kSessionEnds = 41;

std::ofstream record;

LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const char* const name = message == WM_CLOSE             ? "WM_CLOSE"
                             : message == WM_QUERYENDSESSION ? "WM_QUERYENDSESSION"
                             : message == WM_ENDSESSION      ? "WM_ENDSESSION"
                                                             : nullptr;
    if (name && record.is_open()) {
        record << name << ' ' << wParam << ' ' << std::hex << lParam << std::dec << std::endl;
    } else if (message == WM_CLOSE) {
        ExitProcess(kClosed);
    } else if (message == WM_ENDSESSION) {
        ExitProcess(kSessionEnds);
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

// As the service's: hidden, disabled, top-level.
HWND makeWindow() {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = windowProcedure;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = kWindowClass;
    RegisterClassW(&windowClass);
    return CreateWindowExW(0, kWindowClass, kWindowClass, WS_DISABLED, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
                           CW_USEDEFAULT, nullptr, nullptr, windowClass.hInstance, nullptr);
}

int runWindow() {
    if (!makeWindow()) {
        return 1;
    }
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        DispatchMessageW(&message);
    }
    return 0;
}

bool hasWindow(DWORD processId) {
    HWND window = nullptr;
    while ((window = FindWindowExW(nullptr, window, kWindowClass, nullptr)) != nullptr) {
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        if (owner == processId) {
            return true;
        }
    }
    return false;
}

// A timer with the id 0 of a window.
Answer timerZero() {
    const HWND window = makeWindow();
    const UINT_PTR made = SetTimer(window, 0, 10, nullptr);
    MSG message{};
    const bool came = waitUntil([&] { return PeekMessageW(&message, window, WM_TIMER, WM_TIMER, PM_REMOVE) != 0; });
    const BOOL ended = KillTimer(window, 0);
    DestroyWindow(window);
    return holdsIf(made != 0 && came && message.wParam == 0 && ended,
                   "SetTimer gives " + std::to_string(made) + ", the message " +
                       (came ? "has wParam " + std::to_string(message.wParam) : "does not come"));
}

Answer taskkill() {
    const OwnProcess process(ownProgram(), L"--window");
    if (!waitUntil([&] { return hasWindow(process.id()); })) {
        return cannotTell("no window was made");
    }
    wchar_t folder[MAX_PATH];
    GetSystemDirectoryW(folder, MAX_PATH);
    const OwnProcess command(std::filesystem::path(folder) / L"taskkill.exe", L"/pid " + std::to_wstring(process.id()));
    if (!command.ends()) {
        return cannotTell("taskkill does not end");
    }
    if (!process.ends(10'000)) {
        return holdsIf(false,
                       "taskkill ends with " + std::to_string(command.exitCode()) + ", the window hears nothing");
    }
    return holdsIf(process.exitCode() == kClosed, process.exitCode() == kClosed        ? "WM_CLOSE"
                                                  : process.exitCode() == kSessionEnds ? "WM_ENDSESSION"
                                                                                       : "the process is ended");
}

constexpr wchar_t kLogoffRecord[] = L"windows-facts-logoff.txt";

// WM_QUERYENDSESSION and WM_ENDSESSION with wParam 1: the service waits for what is being written on the latter.
Answer logoff() {
    if (!std::filesystem::exists(kLogoffRecord)) {
        return cannotTell("start windows-facts --logoff, log off and on, and run this again in the same folder");
    }
    std::string seen;
    for (const std::string& line : testing::splitLines(testing::readFile(kLogoffRecord))) {
        seen += (seen.empty() ? "" : ", ") + line;
    }
    // Told once: the next run is to tell of the next logoff.
    std::error_code ignored;
    std::filesystem::remove(kLogoffRecord, ignored);
    if (seen.empty()) {
        return cannotTell("windows-facts --logoff was ended otherwise than by a logoff, or before its messages came");
    }
    return holdsIf(seen.starts_with("WM_QUERYENDSESSION") && seen.find("WM_ENDSESSION 1 ") != std::string::npos, seen);
}

} // namespace

std::vector<Fact> windowFacts() {
    return {{"timer-zero", timerZero}, {"taskkill", taskkill}, {"logoff", logoff}};
}

int playPart(const std::wstring& part) {
    if (part == L"--window") {
        return runWindow();
    }
    if (part == L"--logoff") {
        record.open(std::filesystem::path(kLogoffRecord));
        // The service has no console, which the logoff could end first, and with it this program.
        FreeConsole();
        return runWindow();
    }
    // --sleep: until the probe is done with it.
    Sleep(60'000);
    return 0;
}

} // namespace brisk::facts
