#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace brisk {

// The standard exceptions whose texts the log and the callers rely on. Every standard library words them differently,
// so the service words them itself.

// Reads text as a base-10 signed number: leading white space and a sign are allowed, reading stops at the first
// character that is no digit. Throws std::invalid_argument "invalid stoi argument" when there is no digit and
// std::out_of_range "stoi argument out of range" when the number does not fit.
std::int32_t stringToInt(const std::string& text);

// Throws std::out_of_range "invalid vector subscript".
[[noreturn]] void throwInvalidVectorSubscript();

// Throws std::filesystem::filesystem_error for the operation ("exists", "status", ...) with a Windows error code.
[[noreturn]] void throwFileSystemError(const char* operation, const std::filesystem::path& path,
                                       unsigned long windowsError);

} // namespace brisk
