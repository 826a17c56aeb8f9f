// The calls that tests of this folder script. A fault point can be made only once in a program, hence the references.
#pragma once

#include "support/Faults.h"

#include <windows.h>

namespace brisk::faults {

extern FaultPoint<decltype(::FindWindowA)>& findWindow;
extern FaultPoint<decltype(::RegisterClassA)>& registerClass;
extern FaultPoint<decltype(::CreateWindowExA)>& createWindow;
extern FaultPoint<decltype(::GetMessageA)>& getMessage;
extern FaultPoint<decltype(::TranslateMessage)>& translateMessage;
extern FaultPoint<decltype(::DispatchMessageA)>& dispatchMessage;
extern FaultPoint<decltype(::DefWindowProcA)>& defWindowProc;
extern FaultPoint<decltype(::PostQuitMessage)>& postQuitMessage;
extern FaultPoint<decltype(::GetForegroundWindow)>& getForegroundWindow;
extern FaultPoint<decltype(::EnumDisplayDevicesA)>& enumDisplayDevices;
extern FaultPoint<decltype(::EnumDisplaySettingsA)>& enumDisplaySettings;
extern FaultPoint<decltype(::CreateEventA)>& createEvent;
extern FaultPoint<decltype(::CloseHandle)>& closeHandle;
extern FaultPoint<decltype(::GetModuleFileNameA)>& getModuleFileName;
extern FaultPoint<decltype(::GetProcAddress)>& getProcAddress;
extern FaultPoint<decltype(::OutputDebugStringA)>& outputDebugString;
extern FaultPoint<decltype(::RegCreateKeyExA)>& regCreateKey;
extern FaultPoint<decltype(::RegOpenKeyA)>& regOpenKey;
extern FaultPoint<decltype(::RegSetValueExA)>& regSetValue;
extern FaultPoint<decltype(::RegDeleteTreeA)>& regDeleteTree;

} // namespace brisk::faults
