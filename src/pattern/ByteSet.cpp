#include "pattern/ByteSet.h"

#include "pattern/NamedBytes.h"

#include <optional>
#include <string_view>

namespace brisk {

namespace {

std::size_t indexOf(char byte) {
    return static_cast<unsigned char>(byte);
}

ByteSet bytesOfClass(std::string_view name) {
    const auto bytes = findClass(name);
    if (!bytes) {
        throw std::regex_error(std::regex_constants::error_ctype);
    }
    return *bytes;
}

char collatingElement(std::string_view name) {
    const auto element = findCollatingElement(name);
    if (!element) {
        throw std::regex_error(std::regex_constants::error_collate);
    }
    return *element;
}

// One member of a bracket expression: a single byte, which may begin or end a range, or a whole class.
struct Member {
    std::optional<char> byte;
    ByteSet bytes;
};

Member takeEscapedMember(PatternReader& reader) {
    const char letter = reader.take(std::regex_constants::error_escape);
    if (letter == 'B' || (letter >= '1' && letter <= '9')) {
        throw std::regex_error(std::regex_constants::error_escape);
    }
    switch (letter) {
    case 'd':
    case 'D':
    case 's':
    case 'S':
    case 'w':
    case 'W':
        return {std::nullopt, bytesOfClassEscape(letter)};
    case 'b':
        return {'\b', {}};
    default:
        return {reader.takeCharacterEscape(letter), {}};
    }
}

Member takeMember(PatternReader& reader) {
    const char first = reader.take(std::regex_constants::error_brack);
    if (first == '\\') {
        return takeEscapedMember(reader);
    }
    if (first == '[') {
        if (reader.takeIf(':')) {
            return {std::nullopt, bytesOfClass(reader.takeName(':', std::regex_constants::error_ctype))};
        }
        if (reader.takeIf('.')) {
            return {collatingElement(reader.takeName('.', std::regex_constants::error_collate)), {}};
        }
        if (reader.takeIf('=')) {
            const std::string_view name = reader.takeName('=', std::regex_constants::error_collate);
            return {std::nullopt, equivalentBytes(collatingElement(name))};
        }
    }
    return {first, {}};
}

void addRange(ByteSet& bytes, std::size_t first, std::size_t last) {
    if (first > last) {
        throw std::regex_error(std::regex_constants::error_range);
    }
    for (std::size_t byte = first; byte <= last; ++byte) {
        bytes.set(byte);
    }
}

} // namespace

ByteSet bytesOfDot() {
    ByteSet bytes;
    bytes.set(indexOf('\n'));
    bytes.set(indexOf('\r'));
    return ~bytes;
}

ByteSet bytesOfClassEscape(char letter) {
    const bool isNegated = letter < 'a';
    const char name = static_cast<char>(letter | 0x20);
    const ByteSet bytes = bytesOfClass({&name, 1});
    return isNegated ? ~bytes : bytes;
}

ByteSet takeBracketExpression(PatternReader& reader) {
    const bool isNegated = reader.takeIf('^');
    ByteSet bytes;
    while (!reader.takeIf(']')) {
        const Member first = takeMember(reader);
        bool isRange = reader.takeIf('-');
        if (isRange && reader.isNext(']')) {
            bytes.set(indexOf('-'));
            isRange = false;
        }
        if (isRange) {
            const Member last = takeMember(reader);
            if (!first.byte || !last.byte) {
                throw std::regex_error(std::regex_constants::error_range);
            }
            addRange(bytes, indexOf(*first.byte), indexOf(*last.byte));
        } else if (first.byte) {
            bytes.set(indexOf(*first.byte));
        } else {
            bytes |= first.bytes;
        }
    }
    return isNegated ? ~bytes : bytes;
}

} // namespace brisk
