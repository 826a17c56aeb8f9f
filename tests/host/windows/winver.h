// Version resources.
#pragma once

#include "windef.h"

DWORD GetFileVersionInfoSizeW(LPCWSTR path, LPDWORD ignored);
BOOL GetFileVersionInfoW(LPCWSTR path, DWORD handle, DWORD size, LPVOID resource);
BOOL VerQueryValueW(LPCVOID resource, LPCWSTR subBlock, LPVOID* value, UINT* length);
