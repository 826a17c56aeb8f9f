#pragma once

#include <cstddef>
#include <regex>
#include <string_view>

namespace brisk {

// Walks over the bytes of a regular expression. Every error is a PatternError at the place where the reader stood.
class PatternReader {
public:
    // The pattern must outlive the reader.
    explicit PatternReader(std::string_view text) : pattern(text) {}

    bool atEnd() const { return place == pattern.size(); }

    // The offset of the next byte.
    std::size_t position() const { return place; }

    // Whether the next byte is this one.
    bool isNext(char byte) const { return !atEnd() && pattern[place] == byte; }

    // Steps over the next byte if it is this one; answers whether it was.
    bool takeIf(char byte);

    // The next byte, stepped over. At the end: throws with the given code.
    char take(std::regex_constants::error_type codeAtEnd);

    // Makes the byte taken last the next one again.
    void stepBack() { --place; }

    // Steps over a run of decimal digits and gives its number, which stops growing at the limit. There must be a digit,
    // otherwise throws with the given code.
    std::size_t takeNumber(std::size_t limit, std::regex_constants::error_type codeWithoutDigit);

    // Everything up to the next closer followed by ']', as in "[:alpha:]", both stepped over. Throws with
    // the given code where the closer is missing or stands without its ']'.
    std::string_view takeName(char closer, std::regex_constants::error_type codeIfUnclosed);

    // The byte that an escape stands for, its backslash and its first byte (the letter) being stepped over: \f \n \r
    // \t \v \0, \cX, \xHH and \uHHHH; any other letter stands for itself.
    char takeCharacterEscape(char letter);

private:
    unsigned takeHexadecimal(int digits);

    std::string_view pattern;
    std::size_t place = 0;
};

} // namespace brisk
