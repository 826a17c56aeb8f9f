#pragma once

#include <filesystem>
#include <string>

namespace brisk {

// Narrow text is in the process code page (UTF-8 by the executable's manifest). The standard library's own narrow path
// conversions follow the C locale instead and do not round-trip, so paths are made and read through these.
// Bytes that are no character of the code page become its replacement character. Outside of Windows there is toPath
// alone, which takes the bytes as they are.
std::wstring toWide(const std::string& narrow);
std::string toNarrow(const std::wstring& wide);
std::filesystem::path toPath(const std::string& narrow);

} // namespace brisk
