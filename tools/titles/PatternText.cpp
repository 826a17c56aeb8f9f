#include "tools/titles/PatternText.h"

#include "tools/titles/AsciiText.h"

namespace brisk::workbench {

std::string escapePattern(std::string_view text) {
    constexpr std::string_view kSpecial = "\\^$.*+?()[]{}|";
    std::string pattern;
    for (const char byte : text) {
        const auto code = static_cast<unsigned char>(byte);
        if (byte == '\n') {
            pattern += "\\n";
        } else if (byte == '\t') {
            pattern += "\\t";
        } else if (code < 0x20 || code >= 0x7F) {
            pattern += "\\x" + hexadecimal(byte);
        } else {
            pattern += (kSpecial.find(byte) != std::string_view::npos ? "\\" : "") + std::string(1, byte);
        }
    }
    return pattern;
}

std::string blanksLike(std::string_view blanks) {
    if (blanks.empty()) {
        return {};
    }
    return blanks.find_first_not_of(' ') == std::string_view::npos ? " *" : "[ \\t]*";
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    const std::size_t begin = text.find_first_not_of(kBlanks);
    return begin == std::string_view::npos ? text.substr(text.size())
                                           : text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

std::size_t markSize(std::string_view text) {
    return text.starts_with("\xEF\xBB\xBF") ? 3 : 0;
}

} // namespace brisk::workbench
