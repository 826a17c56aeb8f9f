// What is left of the system: the user's folders, the program's own module, events, the debugger.
#pragma once

#include <map>
#include <string>
#include <vector>

#include <windows.h>

namespace brisk::host {

struct System {
    System();

    std::map<int, std::string> folders; // by CSIDL
    std::string module;                 // full path of the running executable
    std::vector<std::string> debuggerOutput;
    std::map<std::string, bool> events; // by name, those that have been made: whether set
};

System& simulatedSystem();

} // namespace brisk::host
