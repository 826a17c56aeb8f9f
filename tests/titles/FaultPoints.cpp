#include "FaultPoints.h"

BRISK_FAULT_POINT("kernel32.dll", GetFileAttributesW)
BRISK_FAULT_POINT("kernel32.dll", FindFirstFileW)
BRISK_FAULT_POINT("kernel32.dll", FindNextFileW)
BRISK_FAULT_POINT("kernel32.dll", FindClose)
BRISK_FAULT_POINT("kernel32.dll", CreateFileW)
BRISK_FAULT_POINT("kernel32.dll", GetFileInformationByHandle)
BRISK_FAULT_POINT("advapi32.dll", RegOpenKeyExA)
BRISK_FAULT_POINT("advapi32.dll", RegCloseKey)
BRISK_FAULT_POINT("advapi32.dll", RegSetValueExA)
BRISK_FAULT_POINT("advapi32.dll", RegQueryValueExA)
BRISK_FAULT_POINT("shell32.dll", SHGetFolderPathA)

namespace brisk::faults {

FaultPoint<decltype(::GetFileAttributesW)>& getFileAttributes = GetFileAttributesWFault;
FaultPoint<decltype(::FindFirstFileW)>& findFirstFile = FindFirstFileWFault;
FaultPoint<decltype(::FindNextFileW)>& findNextFile = FindNextFileWFault;
FaultPoint<decltype(::FindClose)>& findClose = FindCloseFault;
FaultPoint<decltype(::CreateFileW)>& createFile = CreateFileWFault;
FaultPoint<decltype(::GetFileInformationByHandle)>& getFileInformation = GetFileInformationByHandleFault;
FaultPoint<decltype(::RegOpenKeyExA)>& regOpenKey = RegOpenKeyExAFault;
FaultPoint<decltype(::RegCloseKey)>& regCloseKey = RegCloseKeyFault;
FaultPoint<decltype(::RegSetValueExA)>& regSetValue = RegSetValueExAFault;
FaultPoint<decltype(::RegQueryValueExA)>& regQueryValue = RegQueryValueExAFault;
FaultPoint<decltype(::SHGetFolderPathA)>& getFolderPath = SHGetFolderPathAFault;

} // namespace brisk::faults
