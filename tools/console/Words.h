#pragma once

#include <cstdint>
#include <string>

namespace brisk {

// "12 ticks", "1 tick".
inline std::string counted(std::uint64_t number, const std::string& noun) {
    return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
}

} // namespace brisk
