#include "pattern/ByteSet.h"

#include "pattern/NamedBytes.h"
#include "pattern/PatternError.h"

#include <optional>
#include <string_view>

namespace brisk {

namespace {

std::size_t indexOf(char byte) {
    return static_cast<unsigned char>(byte);
}

ByteSet bytesOfClass(std::string_view name, std::size_t place) {
    const auto bytes = findClass(name);
    if (!bytes) {
        throw PatternError(std::regex_constants::error_ctype, place);
    }
    return *bytes;
}

char collatingElement(std::string_view name, std::size_t place) {
    const auto element = findCollatingElement(name);
    if (!element) {
        throw PatternError(std::regex_constants::error_collate, place);
    }
    return *element;
}

// One member of a bracket expression: a single byte, which may begin or end a range, or a whole class.
struct Member {
    std::size_t begin;
    std::optional<char> byte;
    ByteSet bytes;
};

Member takeEscapedMember(PatternReader& reader, std::size_t begin) {
    const char letter = reader.take(std::regex_constants::error_escape);
    if (letter == 'B' || (letter >= '1' && letter <= '9')) {
        throw PatternError(std::regex_constants::error_escape, begin);
    }
    switch (letter) {
    case 'd':
    case 'D':
    case 's':
    case 'S':
    case 'w':
    case 'W':
        return {begin, std::nullopt, bytesOfClassEscape(letter)};
    case 'b':
        return {begin, '\b', {}};
    default:
        return {begin, reader.takeCharacterEscape(letter), {}};
    }
}

// Opening: the place of the '[' that begins the expression.
Member takeMember(PatternReader& reader, std::size_t opening) {
    if (reader.atEnd()) {
        throw PatternError(std::regex_constants::error_brack, opening);
    }
    const std::size_t begin = reader.position();
    const char first = reader.take(std::regex_constants::error_brack);
    if (first == '\\') {
        return takeEscapedMember(reader, begin);
    }
    if (first == '[') {
        if (reader.takeIf(':')) {
            return {begin, std::nullopt, bytesOfClass(reader.takeName(':', std::regex_constants::error_ctype), begin)};
        }
        if (reader.takeIf('.')) {
            return {begin, collatingElement(reader.takeName('.', std::regex_constants::error_collate), begin), {}};
        }
        if (reader.takeIf('=')) {
            const std::string_view name = reader.takeName('=', std::regex_constants::error_collate);
            return {begin, std::nullopt, equivalentBytes(collatingElement(name, begin))};
        }
    }
    return {begin, first, {}};
}

void addRange(ByteSet& bytes, const Member& first, const Member& last) {
    if (!first.byte || !last.byte || indexOf(*first.byte) > indexOf(*last.byte)) {
        throw PatternError(std::regex_constants::error_range, first.begin);
    }
    for (std::size_t byte = indexOf(*first.byte); byte <= indexOf(*last.byte); ++byte) {
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
    const ByteSet bytes = *findClass({&name, 1});
    return isNegated ? ~bytes : bytes;
}

ByteSet takeBracketExpression(PatternReader& reader) {
    const std::size_t opening = reader.position() - 1;
    const bool isNegated = reader.takeIf('^');
    ByteSet bytes;
    while (!reader.takeIf(']')) {
        const Member first = takeMember(reader, opening);
        bool isRange = reader.takeIf('-');
        if (isRange && reader.isNext(']')) {
            bytes.set(indexOf('-'));
            isRange = false;
        }
        if (isRange) {
            addRange(bytes, first, takeMember(reader, opening));
        } else if (first.byte) {
            bytes.set(indexOf(*first.byte));
        } else {
            bytes |= first.bytes;
        }
    }
    return isNegated ? ~bytes : bytes;
}

} // namespace brisk
