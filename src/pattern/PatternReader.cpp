#include "pattern/PatternReader.h"

#include "pattern/PatternError.h"

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
    ++place;
    return true;
}

char PatternReader::take(std::regex_constants::error_type codeAtEnd) {
    if (atEnd()) {
        throw PatternError(codeAtEnd, place);
    }
    return pattern[place++];
}

std::size_t PatternReader::takeNumber(std::size_t limit, std::regex_constants::error_type codeWithoutDigit) {
    if (atEnd() || !isDigit(pattern[place])) {
        throw PatternError(codeWithoutDigit, place);
    }
    std::size_t number = 0;
    for (; !atEnd() && isDigit(pattern[place]); ++place) {
        number = std::min(limit, number * 10 + static_cast<std::size_t>(pattern[place] - '0'));
    }
    return number;
}

std::string_view PatternReader::takeName(char closer, std::regex_constants::error_type codeIfUnclosed) {
    const std::size_t end = pattern.find(closer, place);
    if (end == std::string_view::npos || end + 1 == pattern.size() || pattern[end + 1] != ']') {
        throw PatternError(codeIfUnclosed, place);
    }
    const std::string_view name = pattern.substr(place, end - place);
    place = end + 2;
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
        if (!atEnd() && isDigit(pattern[place])) {
            throw PatternError(std::regex_constants::error_escape, place);
        }
        return '\0';
    case 'c': {
        const char control = take(std::regex_constants::error_escape);
        if (!isLetter(control)) {
            throw PatternError(std::regex_constants::error_escape, place - 1);
        }
        return static_cast<char>(control % 32);
    }
    case 'x':
        return static_cast<char>(takeHexadecimal(2));
    case 'u': {
        const unsigned unit = takeHexadecimal(4);
        if (unit > 0xFF) {
            throw PatternError(std::regex_constants::error_escape, place - 4);
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
            throw PatternError(std::regex_constants::error_escape, place - 1);
        }
    }
    return number;
}

} // namespace brisk
