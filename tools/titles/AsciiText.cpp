#include "tools/titles/AsciiText.h"

#include <algorithm>

namespace brisk::workbench {

char lowered(char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

std::string lowered(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](char byte) { return lowered(byte); });
    return lower;
}

std::string hexadecimal(char byte) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    const auto code = static_cast<unsigned char>(byte);
    return {kDigits[code >> 4U], kDigits[code & 15U]};
}

} // namespace brisk::workbench
