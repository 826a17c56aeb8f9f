#pragma once

#include "tools/log/LineReader.h"

#include <optional>
#include <string>

namespace brisk::logbook {

// Reads a log to its end, a block at a time; "-" is the standard input. False when it cannot be read, and nothing may
// have been fed then. Paths are UTF-8.
bool readLog(const std::string& path, ByteSink& sink);

// Nothing when it cannot be read.
std::optional<std::string> readWholeFile(const std::string& path);

} // namespace brisk::logbook
