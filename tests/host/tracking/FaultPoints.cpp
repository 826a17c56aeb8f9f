#include "tracking/FaultPoints.h"

BRISK_FAULT_POINT("user32.dll", GetForegroundWindow)
BRISK_FAULT_POINT("user32.dll", GetWindowThreadProcessId)
BRISK_FAULT_POINT("user32.dll", IsWindow)
BRISK_FAULT_POINT("user32.dll", SetTimer)
BRISK_FAULT_POINT("user32.dll", KillTimer)
BRISK_FAULT_POINT("kernel32.dll", OpenProcess)
BRISK_FAULT_POINT("kernel32.dll", GetExitCodeProcess)
BRISK_FAULT_POINT("kernel32.dll", CloseHandle)
BRISK_FAULT_POINT("kernel32.dll", K32GetModuleFileNameExA)
BRISK_FAULT_POINT("version.dll", GetFileVersionInfoSizeA)
BRISK_FAULT_POINT("version.dll", GetFileVersionInfoA)
BRISK_FAULT_POINT("version.dll", VerQueryValueA)
BRISK_FAULT_POINT("kernel32.dll", GetFileAttributesW)
BRISK_FAULT_POINT("kernel32.dll", GetProcAddress)
BRISK_FAULT_POINT("advapi32.dll", RegCreateKeyExA)
BRISK_FAULT_POINT("advapi32.dll", RegSetValueExA)

namespace brisk::faults {

FaultPoint<decltype(::GetForegroundWindow)>& getForegroundWindow = GetForegroundWindowFault;
FaultPoint<decltype(::GetWindowThreadProcessId)>& getWindowThreadProcessId = GetWindowThreadProcessIdFault;
FaultPoint<decltype(::IsWindow)>& isWindow = IsWindowFault;
FaultPoint<decltype(::SetTimer)>& setTimer = SetTimerFault;
FaultPoint<decltype(::KillTimer)>& killTimer = KillTimerFault;
FaultPoint<decltype(::OpenProcess)>& openProcess = OpenProcessFault;
FaultPoint<decltype(::GetExitCodeProcess)>& getExitCodeProcess = GetExitCodeProcessFault;
FaultPoint<decltype(::CloseHandle)>& closeHandle = CloseHandleFault;
FaultPoint<decltype(::K32GetModuleFileNameExA)>& getModuleFileNameEx = K32GetModuleFileNameExAFault;
FaultPoint<decltype(::GetFileVersionInfoSizeA)>& getFileVersionInfoSize = GetFileVersionInfoSizeAFault;
FaultPoint<decltype(::GetFileVersionInfoA)>& getFileVersionInfo = GetFileVersionInfoAFault;
FaultPoint<decltype(::VerQueryValueA)>& verQueryValue = VerQueryValueAFault;
FaultPoint<decltype(::GetFileAttributesW)>& getFileAttributes = GetFileAttributesWFault;
FaultPoint<decltype(::GetProcAddress)>& getProcAddress = GetProcAddressFault;
FaultPoint<decltype(::RegCreateKeyExA)>& regCreateKey = RegCreateKeyExAFault;
FaultPoint<decltype(::RegSetValueExA)>& regSetValue = RegSetValueExAFault;

} // namespace brisk::faults
