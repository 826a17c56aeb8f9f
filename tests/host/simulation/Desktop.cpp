#include "host/simulation/Desktop.h"

#include "host/simulation/Findings.h"
#include "host/simulation/SimulatedCall.h"

#include <algorithm>
#include <cstring>

namespace brisk::host {

HWND Desktop::addWindow(const std::string& className, DWORD processId, WNDPROC procedure) {
    const HWND window = reinterpret_cast<HWND>(nextWindow);
    nextWindow += 2;
    windows[window] = {className, processId, procedure};
    return window;
}

HWND Desktop::findWindow(const std::string& className) const {
    const auto found = std::find_if(windows.begin(), windows.end(),
                                    [&](const auto& entry) { return entry.second.className == className; });
    return found == windows.end() ? nullptr : found->first;
}

Desktop& desktop() {
    static Desktop theDesktop;
    return theDesktop;
}

} // namespace brisk::host

using namespace brisk::host;

ATOM RegisterClassA(const WNDCLASSA* windowClass) {
    return simulate<RegisterClassA>(
        [&]() -> ATOM {
            if (!desktop().classes.emplace(windowClass->lpszClassName, windowClass->lpfnWndProc).second) {
                SetLastError(ERROR_CLASS_ALREADY_EXISTS);
                return 0;
            }
            return 1;
        },
        windowClass);
}

HWND CreateWindowExA(DWORD extendedStyle, LPCSTR className, LPCSTR name, DWORD style, int x, int y, int width,
                     int height, HWND parent, HMENU menu, HINSTANCE instance, LPVOID parameter) {
    return simulate<CreateWindowExA>(
        [&]() -> HWND {
            const auto windowClass = desktop().classes.find(className);
            if (windowClass == desktop().classes.end()) {
                SetLastError(ERROR_CANNOT_FIND_WND_CLASS);
                return nullptr;
            }
            const WNDPROC procedure = windowClass->second;
            const HWND window = desktop().addWindow(className, Desktop::kOwnProcess, procedure);
            procedure(window, WM_CREATE, 0, 0);
            return window;
        },
        extendedStyle, className, name, style, x, y, width, height, parent, menu, instance, parameter);
}

HWND FindWindowA(LPCSTR className, LPCSTR name) {
    return simulate<FindWindowA>([&] { return desktop().findWindow(className); }, className, name);
}

BOOL IsWindow(HWND window) {
    return simulate<IsWindow>([&]() -> BOOL { return desktop().windows.contains(window); }, window);
}

HWND GetForegroundWindow() {
    return simulate<GetForegroundWindow>([] { return desktop().foreground; });
}

DWORD GetWindowThreadProcessId(HWND window, LPDWORD processId) {
    return simulate<GetWindowThreadProcessId>(
        [&]() -> DWORD {
            const auto found = desktop().windows.find(window);
            if (found == desktop().windows.end()) {
                SetLastError(ERROR_INVALID_WINDOW_HANDLE);
                return 0;
            }
            *processId = found->second.processId;
            return 1;
        },
        window, processId);
}

BOOL GetMessageA(MSG* message, HWND window, UINT first, UINT last) {
    return simulate<GetMessageA>(
        [&]() -> BOOL {
            Desktop& all = desktop();
            if (all.queue.empty() && !all.quitPosted && all.onIdle) {
                all.onIdle();
            }
            if (!all.queue.empty()) {
                *message = all.queue.front();
                all.queue.pop_front();
                return TRUE;
            }
            if (!all.quitPosted) {
                addFinding("GetMessageA: waits for ever");
            }
            all.quitPosted = false;
            *message = {nullptr, WM_QUIT, 0, 0};
            return FALSE;
        },
        message, window, first, last);
}

BOOL TranslateMessage(const MSG* /*message*/) {
    return FALSE;
}

LRESULT DispatchMessageA(const MSG* message) {
    WNDPROC procedure = nullptr;
    if (const auto window = desktop().windows.find(message->hwnd); window != desktop().windows.end()) {
        procedure = window->second.procedure;
    }
    const LRESULT result = procedure ? procedure(message->hwnd, message->message, message->wParam, message->lParam) : 0;
    desktop().lastDispatchResult = result;
    return result;
}

LRESULT DefWindowProcA(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return simulate<DefWindowProcA>(
        [&] {
            desktop().defaultHandled.push_back({window, message, wParam, lParam});
            return desktop().defaultResult;
        },
        window, message, wParam, lParam);
}

void PostQuitMessage(int /*exitCode*/) {
    desktop().quitPosted = true;
}

UINT_PTR SetTimer(HWND window, UINT_PTR id, UINT milliseconds, TIMERPROC procedure) {
    return simulate<SetTimer>(
        [&]() -> UINT_PTR {
            if (procedure) {
                addFinding("SetTimer: a timer procedure");
            }
            desktop().timers[{window, id}] = milliseconds;
            return 1;
        },
        window, id, milliseconds, procedure);
}

BOOL KillTimer(HWND window, UINT_PTR id) {
    return simulate<KillTimer>([&]() -> BOOL { return desktop().timers.erase({window, id}) == 1; }, window, id);
}

BOOL EnumDisplayDevicesA(LPCSTR adapter, DWORD index, PDISPLAY_DEVICEA device, DWORD flags) {
    return simulate<EnumDisplayDevicesA>(
        [&]() -> BOOL {
            const auto& displays = desktop().displays;
            if (device->cb != sizeof *device || index >= displays.size()) {
                return FALSE;
            }
            std::strncpy(device->DeviceName, displays[index].name.c_str(), sizeof device->DeviceName - 1);
            device->StateFlags = DISPLAY_DEVICE_ATTACHED_TO_DESKTOP;
            if (displays[index].primary) {
                device->StateFlags |= DISPLAY_DEVICE_PRIMARY_DEVICE;
            }
            return TRUE;
        },
        adapter, index, device, flags);
}

BOOL EnumDisplaySettingsA(LPCSTR device, DWORD number, LPDEVMODEA mode) {
    return simulate<EnumDisplaySettingsA>(
        [&]() -> BOOL {
            const auto& displays = desktop().displays;
            const auto found = std::find_if(displays.begin(), displays.end(), [&](const DisplayDevice& display) {
                return device ? display.name == device : display.primary;
            });
            if (found == displays.end() || mode->dmSize != sizeof *mode) {
                return FALSE;
            }
            const bool isCurrent = number == ENUM_CURRENT_SETTINGS;
            if (isCurrent ? found->current.width == 0 : number >= found->modes.size()) {
                return FALSE;
            }
            const DisplayMode& given = isCurrent ? found->current : found->modes[number];
            mode->dmPelsWidth = given.width;
            mode->dmPelsHeight = given.height;
            mode->dmBitsPerPel = given.bitsPerPixel;
            mode->dmDisplayFrequency = given.frequency;
            return TRUE;
        },
        device, number, mode);
}
