// Version resources.
#pragma once

#include "windef.h"

DWORD GetFileVersionInfoSizeA(LPCSTR path, LPDWORD ignored);
BOOL GetFileVersionInfoA(LPCSTR path, DWORD handle, DWORD size, LPVOID resource);
BOOL VerQueryValueA(LPCVOID resource, LPCSTR subBlock, LPVOID* value, UINT* length);
