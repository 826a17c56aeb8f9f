// The calls that tests of this folder let fail. A fault point can be made only once in a program, hence the references.
#pragma once

#include "support/Faults.h"

#include <windows.h>

#include <objbase.h>

namespace brisk::faults {

extern FaultPoint<decltype(::GetProcAddress)>& getProcAddress;
extern FaultPoint<decltype(::LoadLibraryExW)>& loadLibrary;
extern FaultPoint<decltype(::CoInitializeEx)>& coInitialize;
extern FaultPoint<decltype(::CoCreateInstance)>& coCreateInstance;
extern FaultPoint<decltype(::GetModuleFileNameW)>& getModuleFileName;
extern FaultPoint<decltype(::GetSystemTimeAsFileTime)>& getSystemTime;

template <class Function>
FARPROC asProcedure(Function* function) {
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function));
}

// The functions that the service looks up are missing, or replaced, by name.
inline void replaceFunction(const std::string& name, FARPROC replacement) {
    getProcAddress.intercept([name, replacement](HMODULE module, LPCSTR wanted) {
        return name == wanted ? replacement : getProcAddress.real(module, wanted);
    });
}

} // namespace brisk::faults
