#pragma once

#include "pattern/PatternReader.h"

#include <bitset>

namespace brisk {

// The bytes that one place of a regular expression accepts; bit n stands for byte n. Character classes are those of the
// "C" locale: no byte above 0x7F is a letter.
using ByteSet = std::bitset<256>;

// The bytes that '.' accepts: all but line feed and carriage return.
ByteSet bytesOfDot();

// The bytes of the escape \d, \D, \s, \S, \w or \W, given its letter.
ByteSet bytesOfClassEscape(char letter);

// Whether \w accepts the byte, and \b tells it from its neighbours.
inline bool isWordByte(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') || byte == '_';
}

// The bytes of a bracket expression, whose opening '[' is stepped over already. Throws PatternError.
ByteSet takeBracketExpression(PatternReader& reader);

} // namespace brisk
