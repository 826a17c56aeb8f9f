// Windows, messages, timers and display devices.
#pragma once

#include "windef.h"

#define WM_CREATE 0x0001
#define WM_DESTROY 0x0002
#define WM_CLOSE 0x0010
#define WM_QUIT 0x0012
#define WM_ENDSESSION 0x0016
#define WM_COPYDATA 0x004A
#define WM_TIMER 0x0113
#define WM_USER 0x0400

#define WS_DISABLED 0x08000000
#define CW_USEDEFAULT static_cast<int>(0x80000000)

using WNDPROC = LRESULT(CALLBACK*)(HWND, UINT, WPARAM, LPARAM);
using TIMERPROC = void(CALLBACK*)(HWND, UINT, UINT_PTR, DWORD);

struct WNDCLASSA {
    UINT style;
    WNDPROC lpfnWndProc;
    int cbClsExtra;
    int cbWndExtra;
    HINSTANCE hInstance;
    HICON hIcon;
    HCURSOR hCursor;
    HBRUSH hbrBackground;
    LPCSTR lpszMenuName;
    LPCSTR lpszClassName;
};

struct MSG {
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
};

struct COPYDATASTRUCT {
    ULONG_PTR dwData;
    DWORD cbData;
    PVOID lpData;
};

ATOM RegisterClassA(const WNDCLASSA* windowClass);
HWND CreateWindowExA(DWORD extendedStyle, LPCSTR className, LPCSTR name, DWORD style, int x, int y, int width,
                     int height, HWND parent, HMENU menu, HINSTANCE instance, LPVOID parameter);
HWND FindWindowA(LPCSTR className, LPCSTR name);
BOOL IsWindow(HWND window);
HWND GetForegroundWindow();
DWORD GetWindowThreadProcessId(HWND window, LPDWORD processId);

BOOL GetMessageA(MSG* message, HWND window, UINT first, UINT last);
BOOL TranslateMessage(const MSG* message);
LRESULT DispatchMessageA(const MSG* message);
LRESULT DefWindowProcA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
void PostQuitMessage(int exitCode);

UINT_PTR SetTimer(HWND window, UINT_PTR id, UINT milliseconds, TIMERPROC procedure);
BOOL KillTimer(HWND window, UINT_PTR id);

#define DISPLAY_DEVICE_ATTACHED_TO_DESKTOP 0x00000001
#define DISPLAY_DEVICE_PRIMARY_DEVICE 0x00000004
#define ENUM_CURRENT_SETTINGS static_cast<DWORD>(-1)

struct DISPLAY_DEVICEA {
    DWORD cb;
    CHAR DeviceName[32];
    CHAR DeviceString[128];
    DWORD StateFlags;
    CHAR DeviceID[128];
    CHAR DeviceKey[128];
};
using PDISPLAY_DEVICEA = DISPLAY_DEVICEA*;

struct DEVMODEA {
    BYTE dmDeviceName[32];
    WORD dmSpecVersion;
    WORD dmDriverVersion;
    WORD dmSize;
    WORD dmDriverExtra;
    DWORD dmFields;
    BYTE dmPrinter[16];
    BYTE dmColour[10];
    BYTE dmFormName[32];
    WORD dmLogPixels;
    DWORD dmBitsPerPel;
    DWORD dmPelsWidth;
    DWORD dmPelsHeight;
    DWORD dmDisplayFlags;
    DWORD dmDisplayFrequency;
    DWORD dmColourManagement[8];
};
using PDEVMODEA = DEVMODEA*;
using LPDEVMODEA = DEVMODEA*;
static_assert(sizeof(DEVMODEA) == 156);

BOOL EnumDisplayDevicesA(LPCSTR adapter, DWORD index, PDISPLAY_DEVICEA device, DWORD flags);
BOOL EnumDisplaySettingsA(LPCSTR device, DWORD number, LPDEVMODEA mode);
