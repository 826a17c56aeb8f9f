// Handles, processes, modules, events, files, the debugger and the code page.
#pragma once

#include "windef.h"

DWORD GetLastError();
void SetLastError(DWORD error);
BOOL CloseHandle(HANDLE handle);

#define PROCESS_VM_READ 0x0010
#define PROCESS_QUERY_INFORMATION 0x0400
#define STILL_ACTIVE 259
DWORD GetCurrentProcessId();
HANDLE OpenProcess(DWORD access, BOOL inherit, DWORD processId);
BOOL GetExitCodeProcess(HANDLE process, LPDWORD exitCode);
DWORD K32GetModuleFileNameExA(HANDLE process, HMODULE module, LPSTR path, DWORD characters);

#define LOAD_LIBRARY_SEARCH_APPLICATION_DIR 0x0200
#define LOAD_LIBRARY_SEARCH_USER_DIRS 0x0400
#define LOAD_LIBRARY_SEARCH_SYSTEM32 0x0800
#define LOAD_LIBRARY_SEARCH_DEFAULT_DIRS 0x1000
DWORD GetModuleFileNameA(HMODULE module, LPSTR path, DWORD characters);
HMODULE LoadLibraryExA(LPCSTR name, HANDLE reserved, DWORD flags);
FARPROC GetProcAddress(HMODULE module, LPCSTR name);
BOOL FreeLibrary(HMODULE module);

HANDLE CreateEventA(SECURITY_ATTRIBUTES* security, BOOL manualReset, BOOL signalled, LPCSTR name);
BOOL SetEvent(HANDLE event);

void OutputDebugStringA(LPCSTR text);

#define CP_ACP 0
int MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR narrow, int length, LPWSTR wide, int capacity);
int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR wide, int length, LPSTR narrow, int capacity,
                        LPCSTR defaultCharacter, BOOL* usedDefault);

#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(-1)))
#define INVALID_FILE_ATTRIBUTES static_cast<DWORD>(-1)
#define FILE_ATTRIBUTE_HIDDEN 0x0002
#define FILE_ATTRIBUTE_DIRECTORY 0x0010
#define FILE_ATTRIBUTE_NORMAL 0x0080
#define FILE_ATTRIBUTE_REPARSE_POINT 0x0400
#define GENERIC_READ 0x80000000u
#define GENERIC_WRITE 0x40000000u
#define FILE_READ_ATTRIBUTES 0x0080
#define FILE_SHARE_READ 1
#define FILE_SHARE_WRITE 2
#define FILE_SHARE_DELETE 4
#define OPEN_EXISTING 3
#define FILE_FLAG_BACKUP_SEMANTICS 0x02000000

struct WIN32_FIND_DATAW {
    DWORD dwFileAttributes;
    WCHAR cFileName[MAX_PATH];
};
using LPWIN32_FIND_DATAW = WIN32_FIND_DATAW*;

struct BY_HANDLE_FILE_INFORMATION {
    DWORD dwFileAttributes;
};
using LPBY_HANDLE_FILE_INFORMATION = BY_HANDLE_FILE_INFORMATION*;

DWORD GetFileAttributesW(LPCWSTR path);
HANDLE FindFirstFileW(LPCWSTR pattern, LPWIN32_FIND_DATAW entry);
BOOL FindNextFileW(HANDLE search, LPWIN32_FIND_DATAW entry);
BOOL FindClose(HANDLE search);
HANDLE CreateFileW(LPCWSTR path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security, DWORD disposition,
                   DWORD flags, HANDLE pattern);
BOOL GetFileInformationByHandle(HANDLE file, LPBY_HANDLE_FILE_INFORMATION information);
