// The user's folders.
#pragma once

#include "windows.h"

#define CSIDL_APPDATA 0x001A
#define CSIDL_LOCAL_APPDATA 0x001C
#define CSIDL_PROFILE 0x0028

#define S_OK (static_cast<HRESULT>(0))
#define E_FAIL (static_cast<HRESULT>(0x80004005u))

HRESULT SHGetFolderPathW(HWND window, int csidl, HANDLE token, DWORD flags, LPWSTR path);
