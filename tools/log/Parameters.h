#pragma once

#include <map>
#include <string>

namespace brisk::logbook {

// The parameters of a command line by their flags, "-nw" to "-log", as the service finds them.
std::map<std::string, std::string> readParameters(const std::string& commandLine);

} // namespace brisk::logbook
