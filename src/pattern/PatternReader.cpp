#include "pattern/PatternReader.h"

#include <algorithm>

namespace brisk {

namespace {

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

bool isLetter(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

} // namespace

bool PatternReader::takeIf(char byte) {
    if (!isNext(byte)) {
        return false;
    }
    ++position;
    return true;
}

char PatternReader::take(std::regex_constants::error_type codeAtEnd) {
    if (atEnd()) {
        throw std::regex_error(codeAtEnd);
    }
    return pattern[position++];
}

std::size_t PatternReader::takeNumber(std::size_t limit, std::regex_constants::error_type codeWithoutDigit) {
    if (atEnd() || !isDigit(pattern[position])) {
        throw std::regex_error(codeWithoutDigit);
    }
    std::size_t number = 0;
    for (; !atEnd() && isDigit(pattern[position]); ++position) {
        number = std::min(limit, number * 10 + static_cast<std::size_t>(pattern[position] - '0'));
    }
    return number;
}

std::string_view PatternReader::takeName(char closer, std::regex_constants::error_type codeIfUnclosed) {
    const std::size_t end = pattern.find(closer, position);
    if (end == std::string_view::npos || end + 1 == pattern.size() || pattern[end + 1] != ']') {
        throw std::regex_error(codeIfUnclosed);
    }
    const std::string_view name = pattern.substr(position, end - position);
    position = end + 2;
    return name;
}

char PatternReader::takeCharacterEscape(char letter) {
    switch (letter) {
    case 'f':
        return '\f';
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    case 'v':
        return '\v';
    case '0':
        // "\01" would be an octal number, which the grammar does not know.
        if (!atEnd() && isDigit(pattern[position])) {
            throw std::regex_error(std::regex_constants::error_escape);
        }
        return '\0';
    case 'c': {
        const char control = take(std::regex_constants::error_escape);
        if (!isLetter(control)) {
            throw std::regex_error(std::regex_constants::error_escape);
        }
        return static_cast<char>(control % 32);
    }
    case 'x':
        return static_cast<char>(takeHexadecimal(2));
    case 'u': {
        const unsigned unit = takeHexadecimal(4);
        if (unit > 0xFF) {
            throw std::regex_error(std::regex_constants::error_escape);
        }
        return static_cast<char>(unit);
    }
    default:
        return letter;
    }
}

unsigned PatternReader::takeHexadecimal(int digits) {
    unsigned number = 0;
    for (; digits > 0; --digits) {
        const char digit = take(std::regex_constants::error_escape);
        if (isDigit(digit)) {
            number = number * 16 + static_cast<unsigned>(digit - '0');
        } else if (isLetter(digit) && (digit | 0x20) <= 'f') {
            number = number * 16 + static_cast<unsigned>((digit | 0x20) - 'a') + 10;
        } else {
            throw std::regex_error(std::regex_constants::error_escape);
        }
    }
    return number;
}

} // namespace brisk
