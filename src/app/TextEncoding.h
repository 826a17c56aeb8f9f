#pragma once

#include <filesystem>
#include <string>

namespace brisk {

// Narrow text is in the process code page (UTF-8 by the executable's manifest). The standard library's own narrow path
// conversions follow the C locale instead and do not round-trip, so paths are made and read through these two.
// Bytes that are no character of the code page become its replacement character.
std::filesystem::path toPath(const std::string& narrow);
std::string toNarrow(const std::filesystem::path& path);

} // namespace brisk
