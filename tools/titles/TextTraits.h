#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace brisk::workbench {

// What a settings file is made of, and what reading and rewriting it as text does to it beside the settings.
struct TextTraits {
    std::size_t crLf = 0;
    std::size_t loneLf = 0;
    std::size_t loneCr = 0;
    bool hasUtf8Mark = false;
    bool isUtf16 = false;
    bool isUtf8 = true; // pure ASCII is, too
    bool isAscii = true;
    std::size_t firstNul;   // npos: none
    std::size_t firstCtrlZ; // 0x1A; npos: none
    std::size_t size = 0;
};

TextTraits findTraits(std::string_view bytes);

// In one line.
std::string describe(const TextTraits& traits);

} // namespace brisk::workbench
