// The calls that tests of this folder let fail.
#pragma once

#include "support/Faults.h"

#include <windows.h>

#include <objbase.h>

BRISK_FAULT_POINT("kernel32.dll", GetProcAddress)
BRISK_FAULT_POINT("kernel32.dll", LoadLibraryExW)
BRISK_FAULT_POINT("ole32.dll", CoInitializeEx)
BRISK_FAULT_POINT("ole32.dll", CoCreateInstance)
BRISK_FAULT_POINT("kernel32.dll", GetModuleFileNameW)
BRISK_FAULT_POINT("kernel32.dll", GetSystemTimeAsFileTime)

namespace brisk::faults {

template <class Function>
FARPROC asProcedure(Function* function) {
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function));
}

// The functions that the service looks up are missing, or replaced, by name.
inline void replaceFunction(const std::string& name, FARPROC replacement) {
    GetProcAddressFault.intercept([name, replacement](HMODULE module, LPCSTR wanted) {
        return name == wanted ? replacement : GetProcAddressFault.real(module, wanted);
    });
}

} // namespace brisk::faults
