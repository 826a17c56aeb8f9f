// The types and constants that all of the simulated Windows shares. Sizes are those of 64-bit Windows, except wchar_t.
#pragma once

#include <cstddef>
#include <cstdint>

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using USHORT = std::uint16_t;
using UINT = std::uint32_t;
using UINT32 = std::uint32_t;
using ULONG = std::uint32_t;
using INT32 = std::int32_t;
using INT64 = std::int64_t;
using LONG = std::int32_t;
using LSTATUS = LONG;
using HRESULT = LONG;
using BOOL = int;
using WINBOOL = BOOL;
using CHAR = char;
using WCHAR = wchar_t;
using ATOM = WORD;
using ULONG_PTR = std::uint64_t;
using UINT_PTR = std::uint64_t;
using WPARAM = UINT_PTR;
using LPARAM = std::int64_t;
using LRESULT = std::int64_t;

using PVOID = void*;
using LPVOID = void*;
using LPCVOID = const void*;
using LPBYTE = BYTE*;
using LPDWORD = DWORD*;
using LPSTR = char*;
using LPCSTR = const char*;
using LPWSTR = wchar_t*;
using PWSTR = wchar_t*;
using LPCWSTR = const wchar_t*;
using PCWSTR = const wchar_t*;

using HANDLE = void*;
using HWND = struct HWND__*;
using HKEY = struct HKEY__*;
using PHKEY = HKEY*;
using REGSAM = DWORD;
using HINSTANCE = struct HINSTANCE__*;
using HMODULE = HINSTANCE;
using HMENU = struct HMENU__*;
using HICON = struct HICON__*;
using HCURSOR = HICON;
using HBRUSH = struct HBRUSH__*;
using FARPROC = std::int64_t (*)();

#define WINAPI
#define CALLBACK
#define STDMETHODCALLTYPE

#define TRUE 1
#define FALSE 0
#define MAX_PATH 260

struct SECURITY_ATTRIBUTES;
using LPSECURITY_ATTRIBUTES = SECURITY_ATTRIBUTES*;

struct FILETIME {
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
};

#define ERROR_SUCCESS 0L
#define ERROR_FILE_NOT_FOUND 2L
#define ERROR_PATH_NOT_FOUND 3L
#define ERROR_ACCESS_DENIED 5L
#define ERROR_INVALID_HANDLE 6L
#define ERROR_NOT_ENOUGH_MEMORY 8L
#define ERROR_NO_MORE_FILES 18L
#define ERROR_NOT_READY 21L
#define ERROR_SHARING_VIOLATION 32L
#define ERROR_BAD_NETPATH 53L
#define ERROR_NETNAME_DELETED 64L
#define ERROR_INVALID_PARAMETER 87L
#define ERROR_DISK_FULL 112L
#define ERROR_INSUFFICIENT_BUFFER 122L
#define ERROR_INVALID_NAME 123L
#define ERROR_MOD_NOT_FOUND 126L
#define ERROR_PROC_NOT_FOUND 127L
#define ERROR_ALREADY_EXISTS 183L
#define ERROR_MORE_DATA 234L
#define ERROR_NO_MORE_ITEMS 259L
#define ERROR_PARTIAL_COPY 299L
#define ERROR_KEY_DELETED 1018L
#define ERROR_IO_DEVICE 1117L
#define ERROR_INVALID_WINDOW_HANDLE 1400L
#define ERROR_CANNOT_FIND_WND_CLASS 1407L
#define ERROR_CLASS_ALREADY_EXISTS 1410L
#define ERROR_UNSUPPORTED_TYPE 1630L
#define ERROR_RESOURCE_TYPE_NOT_FOUND 1813L
