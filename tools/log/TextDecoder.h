#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace brisk::logbook {

// Bytes of a log, as some viewers save it: with a byte order mark, or as UTF-16, which is known without a mark, too,
// where the first two characters are ASCII. Whatever else has no mark is left as it is.
class TextDecoder {
public:
    // The decoded bytes; they last until the next call.
    std::string_view decode(std::string_view bytes);
    // What was held back as the possible front of a mark.
    std::string_view finish();

private:
    enum class Encoding { Undecided, Bytes, LittleEndian, BigEndian };

    std::string_view decodeUnits(std::string_view bytes);
    void appendUnit(std::uint32_t unit);

    Encoding encoding = Encoding::Undecided;
    std::string front; // of the text, until it tells
    std::string decoded;
    int halfUnit = -1; // the first byte of a unit
    std::uint32_t highSurrogate = 0;
};

} // namespace brisk::logbook
