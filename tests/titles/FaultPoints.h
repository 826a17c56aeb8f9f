// The calls that tests of this folder let fail. A fault point can be made only once in a program, hence the references.
#pragma once

#include "support/Faults.h"

#include <windows.h>

#include <shlobj.h>

namespace brisk::faults {

extern FaultPoint<decltype(::GetFileAttributesW)>& getFileAttributes;
extern FaultPoint<decltype(::FindFirstFileW)>& findFirstFile;
extern FaultPoint<decltype(::FindNextFileW)>& findNextFile;
extern FaultPoint<decltype(::FindClose)>& findClose;
extern FaultPoint<decltype(::CreateFileW)>& createFile;
extern FaultPoint<decltype(::GetFileInformationByHandle)>& getFileInformation;
extern FaultPoint<decltype(::RegOpenKeyExA)>& regOpenKey;
extern FaultPoint<decltype(::RegCloseKey)>& regCloseKey;
extern FaultPoint<decltype(::RegSetValueExA)>& regSetValue;
extern FaultPoint<decltype(::RegQueryValueExA)>& regQueryValue;
extern FaultPoint<decltype(::SHGetFolderPathA)>& getFolderPath;

} // namespace brisk::faults
