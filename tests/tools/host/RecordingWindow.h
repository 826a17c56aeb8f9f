// The service's window, played by the test.
#pragma once

#include "BriskHost.h"
#include "base/WindowsHandles.h"

#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <windows.h>

namespace brisk::testing {

inline std::string hexadecimal(std::uint64_t number) {
    std::ostringstream text;
    text << "0x" << std::hex << number;
    return text.str();
}

inline std::vector<std::string> received;

inline LRESULT CALLBACK recordMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_COPYDATA) {
        const auto* data = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
        received.push_back("copy data, wParam " + hexadecimal(wParam) + ", tag " + hexadecimal(data->dwData) +
                           ", bytes [" + std::string(static_cast<const char*>(data->lpData), data->cbData) + "]");
    } else if (message >= WM_USER && message < 0x8000) {
        received.push_back("message " + hexadecimal(message) + ", wParam " + hexadecimal(wParam) + ", lParam " +
                           hexadecimal(static_cast<std::uint64_t>(lParam)));
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

// A hidden window as the service has it; what it gets is in `received`.
class ServiceWindow {
public:
    ServiceWindow() {
        received.clear();
        WNDCLASSA windowClass{};
        windowClass.lpfnWndProc = recordMessage;
        windowClass.hInstance = GetModuleHandleA(nullptr);
        windowClass.lpszClassName = BRISK_WINDOW_CLASS;
        RegisterClassA(&windowClass);
        window = CreateWindowExA(0, BRISK_WINDOW_CLASS, BRISK_WINDOW_CLASS, WS_DISABLED, CW_USEDEFAULT, CW_USEDEFAULT,
                                 CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr, windowClass.hInstance, nullptr);
        if (!window) {
            throw std::runtime_error("no window");
        }
    }
    ServiceWindow(const ServiceWindow&) = delete;
    ServiceWindow& operator=(const ServiceWindow&) = delete;
    ~ServiceWindow() { DestroyWindow(window); }

private:
    HWND window;
};

// Nothing is told to a service of the user's that happens to run.
class HostTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (FindWindowA(BRISK_WINDOW_CLASS, nullptr) ||
            UniqueHandle(OpenEventA(SYNCHRONIZE, FALSE, BRISK_STARTED_EVENT))) {
            GTEST_SKIP() << "a service is running";
        }
    }
};

} // namespace brisk::testing
