#include "FaultPoints.h"

BRISK_FAULT_POINT("user32.dll", FindWindowA)
BRISK_FAULT_POINT("user32.dll", RegisterClassA)
BRISK_FAULT_POINT("user32.dll", CreateWindowExA)
BRISK_FAULT_POINT("user32.dll", GetMessageA)
BRISK_FAULT_POINT("user32.dll", TranslateMessage)
BRISK_FAULT_POINT("user32.dll", DispatchMessageA)
BRISK_FAULT_POINT("user32.dll", DefWindowProcA)
BRISK_FAULT_POINT("user32.dll", PostQuitMessage)
BRISK_FAULT_POINT("user32.dll", GetForegroundWindow)
BRISK_FAULT_POINT("user32.dll", EnumDisplayDevicesA)
BRISK_FAULT_POINT("user32.dll", EnumDisplaySettingsA)
BRISK_FAULT_POINT("kernel32.dll", CloseHandle)
BRISK_FAULT_POINT("kernel32.dll", GetModuleFileNameA)
BRISK_FAULT_POINT("kernel32.dll", GetProcAddress)
BRISK_FAULT_POINT("kernel32.dll", OutputDebugStringA)
BRISK_FAULT_POINT("advapi32.dll", RegCreateKeyExA)
BRISK_FAULT_POINT("advapi32.dll", RegOpenKeyA)
BRISK_FAULT_POINT("advapi32.dll", RegSetValueExA)
BRISK_FAULT_POINT("advapi32.dll", RegDeleteTreeA)

namespace {

brisk::faults::FaultPoint<decltype(::CreateEventA)> CreateEventAFault{"kernel32.dll", "CreateEventA"};

// The C++ runtime makes nameless events of its own, the first of them before fault points exist.
HANDLE WINAPI createEventA(LPSECURITY_ATTRIBUTES attributes, BOOL manual, BOOL signalled, LPCSTR name) {
    return name ? CreateEventAFault.call(attributes, manual, signalled, name)
                : CreateEventW(attributes, manual, signalled, nullptr);
}

} // namespace

extern "C" {
decltype(&::CreateEventA) __imp_CreateEventA = &createEventA;
}

namespace brisk::faults {

FaultPoint<decltype(::FindWindowA)>& findWindow = FindWindowAFault;
FaultPoint<decltype(::RegisterClassA)>& registerClass = RegisterClassAFault;
FaultPoint<decltype(::CreateWindowExA)>& createWindow = CreateWindowExAFault;
FaultPoint<decltype(::GetMessageA)>& getMessage = GetMessageAFault;
FaultPoint<decltype(::TranslateMessage)>& translateMessage = TranslateMessageFault;
FaultPoint<decltype(::DispatchMessageA)>& dispatchMessage = DispatchMessageAFault;
FaultPoint<decltype(::DefWindowProcA)>& defWindowProc = DefWindowProcAFault;
FaultPoint<decltype(::PostQuitMessage)>& postQuitMessage = PostQuitMessageFault;
FaultPoint<decltype(::GetForegroundWindow)>& getForegroundWindow = GetForegroundWindowFault;
FaultPoint<decltype(::EnumDisplayDevicesA)>& enumDisplayDevices = EnumDisplayDevicesAFault;
FaultPoint<decltype(::EnumDisplaySettingsA)>& enumDisplaySettings = EnumDisplaySettingsAFault;
FaultPoint<decltype(::CreateEventA)>& createEvent = CreateEventAFault;
FaultPoint<decltype(::CloseHandle)>& closeHandle = CloseHandleFault;
FaultPoint<decltype(::GetModuleFileNameA)>& getModuleFileName = GetModuleFileNameAFault;
FaultPoint<decltype(::GetProcAddress)>& getProcAddress = GetProcAddressFault;
FaultPoint<decltype(::OutputDebugStringA)>& outputDebugString = OutputDebugStringAFault;
FaultPoint<decltype(::RegCreateKeyExA)>& regCreateKey = RegCreateKeyExAFault;
FaultPoint<decltype(::RegOpenKeyA)>& regOpenKey = RegOpenKeyAFault;
FaultPoint<decltype(::RegSetValueExA)>& regSetValue = RegSetValueExAFault;
FaultPoint<decltype(::RegDeleteTreeA)>& regDeleteTree = RegDeleteTreeAFault;

} // namespace brisk::faults
