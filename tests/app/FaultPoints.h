// The calls that tests of this folder script.
#pragma once

#include "support/Faults.h"

#include <windows.h>

BRISK_FAULT_POINT("user32.dll", FindWindowA)
BRISK_FAULT_POINT("user32.dll", RegisterClassA)
BRISK_FAULT_POINT("user32.dll", CreateWindowExA)
BRISK_FAULT_POINT("user32.dll", GetMessageA)
BRISK_FAULT_POINT("user32.dll", TranslateMessage)
BRISK_FAULT_POINT("user32.dll", DispatchMessageA)
BRISK_FAULT_POINT("user32.dll", DefWindowProcA)
BRISK_FAULT_POINT("user32.dll", PostQuitMessage)
BRISK_FAULT_POINT("user32.dll", GetForegroundWindow)
BRISK_FAULT_POINT("user32.dll", EnumDisplayDevicesA)
BRISK_FAULT_POINT("user32.dll", EnumDisplaySettingsA)
BRISK_FAULT_POINT("kernel32.dll", CloseHandle)
BRISK_FAULT_POINT("kernel32.dll", GetModuleFileNameA)
BRISK_FAULT_POINT("kernel32.dll", GetProcAddress)
BRISK_FAULT_POINT("kernel32.dll", OutputDebugStringA)
BRISK_FAULT_POINT("advapi32.dll", RegCreateKeyExA)
BRISK_FAULT_POINT("advapi32.dll", RegOpenKeyA)
BRISK_FAULT_POINT("advapi32.dll", RegSetValueExA)
BRISK_FAULT_POINT("advapi32.dll", RegDeleteTreeA)

// Named events only: the C++ runtime makes nameless ones, too, as many as it likes.
// NOLINTNEXTLINE(readability-identifier-naming): as BRISK_FAULT_POINT names them
inline constinit brisk::faults::FaultPoint<decltype(::CreateEventA)> CreateEventAFault{"kernel32.dll", "CreateEventA"};

namespace brisk::faults {

inline HANDLE WINAPI createNamedEvent(LPSECURITY_ATTRIBUTES attributes, BOOL manual, BOOL signalled, LPCSTR name) {
    return name ? CreateEventAFault.call(attributes, manual, signalled, name)
                : CreateEventW(attributes, manual, signalled, nullptr);
}

} // namespace brisk::faults

BRISK_IMPORT(CreateEventA, &brisk::faults::createNamedEvent)
