#include "toast/FaultPoints.h"

BRISK_FAULT_POINT("kernel32.dll", GetProcAddress)
BRISK_FAULT_POINT("kernel32.dll", LoadLibraryExW)
BRISK_FAULT_POINT("ole32.dll", CoInitializeEx)
BRISK_FAULT_POINT("ole32.dll", CoCreateInstance)
BRISK_FAULT_POINT("kernel32.dll", GetModuleFileNameW)
BRISK_FAULT_POINT("kernel32.dll", GetSystemTimeAsFileTime)

namespace brisk::faults {

FaultPoint<decltype(::GetProcAddress)>& getProcAddress = GetProcAddressFault;
FaultPoint<decltype(::LoadLibraryExW)>& loadLibrary = LoadLibraryExWFault;
FaultPoint<decltype(::CoInitializeEx)>& coInitialize = CoInitializeExFault;
FaultPoint<decltype(::CoCreateInstance)>& coCreateInstance = CoCreateInstanceFault;
FaultPoint<decltype(::GetModuleFileNameW)>& getModuleFileName = GetModuleFileNameWFault;
FaultPoint<decltype(::GetSystemTimeAsFileTime)>& getSystemTime = GetSystemTimeAsFileTimeFault;

} // namespace brisk::faults
