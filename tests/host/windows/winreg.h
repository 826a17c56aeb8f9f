// The registry.
#pragma once

#include "winbase.h"

#define HKEY_CURRENT_USER (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x80000001u)))
#define HKEY_LOCAL_MACHINE (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x80000002u)))

#define REG_OPTION_NON_VOLATILE 0
#define REG_NONE 0
#define REG_SZ 1
#define REG_EXPAND_SZ 2
#define REG_BINARY 3
#define REG_DWORD 4
#define REG_MULTI_SZ 7
#define REG_QWORD 11

#define KEY_QUERY_VALUE 0x0001
#define KEY_SET_VALUE 0x0002
#define KEY_ENUMERATE_SUB_KEYS 0x0008
#define KEY_READ 0x20019
#define KEY_ALL_ACCESS 0xF003F

#define RRF_RT_REG_SZ 0x00000002
#define RRF_RT_REG_DWORD 0x00000010
#define RRF_RT_ANY 0x0000ffff

LSTATUS RegCreateKeyExA(HKEY root, LPCSTR path, DWORD reserved, LPSTR keyClass, DWORD options, DWORD access,
                        SECURITY_ATTRIBUTES* security, HKEY* key, LPDWORD disposition);
LSTATUS RegCreateKeyA(HKEY root, LPCSTR path, HKEY* key);
LSTATUS RegOpenKeyExA(HKEY root, LPCSTR path, DWORD options, DWORD access, HKEY* key);
LSTATUS RegOpenKeyA(HKEY root, LPCSTR path, HKEY* key);
LSTATUS RegCloseKey(HKEY key);
LSTATUS RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size);
LSTATUS RegSetValueExA(HKEY key, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size);
LSTATUS RegSetKeyValueA(HKEY root, LPCSTR path, LPCSTR name, DWORD type, LPCVOID data, DWORD size);
LSTATUS RegGetValueA(HKEY root, LPCSTR path, LPCSTR name, DWORD flags, LPDWORD type, PVOID data, LPDWORD size);
LSTATUS RegDeleteValueA(HKEY key, LPCSTR name);
LSTATUS RegDeleteTreeA(HKEY key, LPCSTR path);
LSTATUS RegEnumValueA(HKEY key, DWORD index, LPSTR name, LPDWORD nameLength, LPDWORD reserved, LPDWORD type,
                      LPBYTE data, LPDWORD size);
LSTATUS RegOverridePredefKey(HKEY predefined, HKEY replacement);
