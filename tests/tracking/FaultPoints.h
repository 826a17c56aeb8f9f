// The calls that tests of this folder script.
#pragma once

#include "support/Faults.h"

#include <windows.h>

#include <psapi.h>

BRISK_FAULT_POINT("user32.dll", GetForegroundWindow)
BRISK_FAULT_POINT("user32.dll", GetWindowThreadProcessId)
BRISK_FAULT_POINT("user32.dll", IsWindow)
BRISK_FAULT_POINT("user32.dll", SetTimer)
BRISK_FAULT_POINT("user32.dll", KillTimer)
BRISK_FAULT_POINT("kernel32.dll", OpenProcess)
BRISK_FAULT_POINT("kernel32.dll", GetExitCodeProcess)
BRISK_FAULT_POINT("kernel32.dll", CloseHandle)
BRISK_FAULT_POINT("kernel32.dll", K32GetModuleFileNameExA)
BRISK_FAULT_POINT("version.dll", GetFileVersionInfoSizeW)
BRISK_FAULT_POINT("version.dll", GetFileVersionInfoW)
BRISK_FAULT_POINT("version.dll", VerQueryValueW)
BRISK_FAULT_POINT("kernel32.dll", GetFileAttributesW)
BRISK_FAULT_POINT("kernel32.dll", GetProcAddress)
BRISK_FAULT_POINT("advapi32.dll", RegCreateKeyExA)
BRISK_FAULT_POINT("advapi32.dll", RegSetValueExA)
