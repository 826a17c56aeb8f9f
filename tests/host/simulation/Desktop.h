// Windows, their message queue and timers, and the display devices.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <windows.h>

namespace brisk::host {

struct SimulatedWindow {
    std::string className;
    DWORD processId = 0;
    WNDPROC procedure = nullptr; // null for windows of other processes
};

struct DisplayMode {
    DWORD width = 0;
    DWORD height = 0;
    DWORD bitsPerPixel = 32;
    DWORD frequency = 0;
};

struct DisplayDevice {
    std::string name;
    bool primary = true;
    DisplayMode current; // a width of 0: cannot be read
    std::vector<DisplayMode> modes;
};

struct Desktop {
    static constexpr DWORD kOwnProcess = 4242;

    std::map<std::string, WNDPROC> classes;
    std::map<HWND, SimulatedWindow> windows;
    HWND foreground = nullptr;
    std::deque<MSG> queue;
    bool quitPosted = false;
    std::map<std::pair<HWND, UINT_PTR>, UINT> timers; // milliseconds
    std::vector<DisplayDevice> displays{
        {"\\\\.\\DISPLAY1", true, {1920, 1080, 32, 60}, {{1280, 720, 32, 60}, {1920, 1080, 32, 60}}}};

    // Called when the message loop has nothing to do; it posts the next message. Without it that is a finding and the
    // loop ends.
    std::function<void()> onIdle;
    // Calls of DefWindowProcA, and what it answers.
    std::vector<MSG> defaultHandled;
    LRESULT defaultResult = 0;
    LRESULT lastDispatchResult = 0;

    HWND addWindow(const std::string& className, DWORD processId, WNDPROC procedure = nullptr);
    HWND findWindow(const std::string& className) const;

private:
    std::uintptr_t nextWindow = 0x10010;
};

Desktop& desktop();

} // namespace brisk::host
