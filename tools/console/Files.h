#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace brisk {

// A path of UTF-8, as command lines give it on every system.
inline std::filesystem::path fromUtf8(const std::string& path) {
    return {std::u8string(path.begin(), path.end())};
}

// The bytes of the file at a path of UTF-8; nothing when it cannot be read.
std::optional<std::string> readFile(const std::string& path);

} // namespace brisk
