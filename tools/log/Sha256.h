#pragma once

#include <string>
#include <string_view>

namespace brisk::logbook {

// The SHA-256 of some bytes as Windows computes it, in small hexadecimal digits; empty where Windows fails.
std::string sha256(std::string_view bytes);

} // namespace brisk::logbook
