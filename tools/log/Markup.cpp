#include "tools/log/Markup.h"

#include <cmath>
#include <cstdint>
#include <cstdio>

namespace brisk::logbook {

std::size_t characterLength(std::string_view text) {
    const auto byte = [text](std::size_t index) { return static_cast<unsigned char>(text[index]); };
    const unsigned first = byte(0);
    if (first < 0x80) {
        return first >= 0x20 || first == '\t' || first == '\n' ? 1 : 0;
    }
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < length) {
        return 0;
    }
    std::uint32_t character = first & (0xFFU >> (length + 1));
    for (std::size_t index = 1; index < length; ++index) {
        if ((byte(index) & 0xC0U) != 0x80U) {
            return 0;
        }
        character = (character << 6U) | (byte(index) & 0x3FU);
    }
    const bool isTooLong = (length == 3 && character < 0x800) || (length == 4 && character < 0x10000);
    const bool isSurrogate = character >= 0xD800 && character < 0xE000;
    return isTooLong || isSurrogate || character > 0x10FFFF || character == 0xFFFE || character == 0xFFFF ? 0 : length;
}

std::string escape(std::string_view text) {
    std::string escaped;
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        switch (length == 0 ? '\0' : text.front()) {
        case '\0':
            escaped += kReplacementCharacter;
            break;
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += text.substr(0, length);
        }
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return escaped;
}

std::string shortNumber(double number) {
    char text[64];
    std::snprintf(text, sizeof text, "%.2f", number);
    std::string shortened = text;
    if (!std::isfinite(number)) {
        return "0";
    }
    while (shortened.ends_with('0')) {
        shortened.pop_back();
    }
    if (shortened.ends_with('.')) {
        shortened.pop_back();
    }
    return shortened == "-0" ? "0" : shortened;
}

} // namespace brisk::logbook
