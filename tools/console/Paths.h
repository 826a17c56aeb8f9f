#pragma once

#include <filesystem>
#include <string>

namespace brisk {

// A path of UTF-8, as command lines give it on every system.
inline std::filesystem::path fromUtf8(const std::string& path) {
    return {std::u8string(path.begin(), path.end())};
}

} // namespace brisk
