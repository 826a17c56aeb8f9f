// The calls that tests of this folder let fail.
#pragma once

#include "support/Faults.h"

#include <windows.h>

#include <shlobj.h>

BRISK_FAULT_POINT("kernel32.dll", GetFileAttributesW)
BRISK_FAULT_POINT("kernel32.dll", FindFirstFileW)
BRISK_FAULT_POINT("kernel32.dll", FindNextFileW)
BRISK_FAULT_POINT("kernel32.dll", FindClose)
BRISK_FAULT_POINT("kernel32.dll", CreateFileW)
BRISK_FAULT_POINT("kernel32.dll", GetFileInformationByHandle)
BRISK_FAULT_POINT("advapi32.dll", RegOpenKeyExA)
BRISK_FAULT_POINT("advapi32.dll", RegCloseKey)
BRISK_FAULT_POINT("advapi32.dll", RegSetValueExA)
BRISK_FAULT_POINT("advapi32.dll", RegQueryValueExA)
BRISK_FAULT_POINT("shell32.dll", SHGetFolderPathW)
