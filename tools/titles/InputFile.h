#pragma once

#include <string>

namespace brisk::workbench {

// A file's bytes. Throws std::runtime_error when it cannot be read.
std::string readInput(const std::string& path);

// The bytes of a game's text file. Throws std::runtime_error also for what is none: UTF-16, and an exported registry.
std::string readSettingsFile(const std::string& path);

} // namespace brisk::workbench
