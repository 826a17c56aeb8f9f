// The calls that tests of this folder script. A fault point can be made only once in a program, hence the references.
#pragma once

#include "support/Faults.h"

#include <windows.h>

#include <psapi.h>

namespace brisk::faults {

extern FaultPoint<decltype(::GetForegroundWindow)>& getForegroundWindow;
extern FaultPoint<decltype(::GetWindowThreadProcessId)>& getWindowThreadProcessId;
extern FaultPoint<decltype(::IsWindow)>& isWindow;
extern FaultPoint<decltype(::SetTimer)>& setTimer;
extern FaultPoint<decltype(::KillTimer)>& killTimer;
extern FaultPoint<decltype(::OpenProcess)>& openProcess;
extern FaultPoint<decltype(::GetExitCodeProcess)>& getExitCodeProcess;
extern FaultPoint<decltype(::CloseHandle)>& closeHandle;
extern FaultPoint<decltype(::K32GetModuleFileNameExA)>& getModuleFileNameEx;
extern FaultPoint<decltype(::GetFileVersionInfoSizeA)>& getFileVersionInfoSize;
extern FaultPoint<decltype(::GetFileVersionInfoA)>& getFileVersionInfo;
extern FaultPoint<decltype(::VerQueryValueA)>& verQueryValue;
extern FaultPoint<decltype(::GetFileAttributesW)>& getFileAttributes;
extern FaultPoint<decltype(::GetProcAddress)>& getProcAddress;
extern FaultPoint<decltype(::RegCreateKeyExA)>& regCreateKey;
extern FaultPoint<decltype(::RegSetValueExA)>& regSetValue;

} // namespace brisk::faults
