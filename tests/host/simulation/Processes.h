// Other processes and the version resources of their executables.
#pragma once

#include <map>
#include <string>

#include <windows.h>

namespace brisk::host {

struct SimulatedProcess {
    std::string executable; // full path
    DWORD exitCode = STILL_ACTIVE;
    bool isProtected = false; // cannot be opened
};

struct VersionResource {
    WORD language = 0x0409;
    WORD codePage = 0x04B0;
    std::map<std::string, std::string> strings; // by name, "CompanyName"
};

struct Processes {
    // An ended process can be opened as long as it stands here.
    std::map<DWORD, SimulatedProcess> byId;
    std::map<std::string, VersionResource> versions; // by full path of the file
    // Exit codes asked for by a handle that was closed: a tick after the process was found ended.
    unsigned lateExitCodes = 0;
};

Processes& processes();

} // namespace brisk::host
