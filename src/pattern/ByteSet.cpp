#include "pattern/ByteSet.h"

#include <locale>
#include <optional>
#include <string>
#include <string_view>

namespace brisk {

namespace {

std::size_t indexOf(char byte) {
    return static_cast<unsigned char>(byte);
}

std::regex_traits<char> classicTraits() {
    std::regex_traits<char> traits;
    traits.imbue(std::locale::classic());
    return traits;
}

ByteSet bytesOfClass(std::string_view name) {
    const auto traits = classicTraits();
    const auto mask = traits.lookup_classname(name.begin(), name.end());
    if (mask == std::regex_traits<char>::char_class_type{}) {
        throw std::regex_error(std::regex_constants::error_ctype);
    }
    ByteSet bytes;
    for (std::size_t byte = 0; byte < bytes.size(); ++byte) {
        bytes[byte] = traits.isctype(static_cast<char>(byte), mask);
    }
    return bytes;
}

char collatingElement(std::string_view name) {
    if (name.size() == 1) {
        return name.front();
    }
    const std::string element = classicTraits().lookup_collatename(name.begin(), name.end());
    if (element.size() != 1) {
        throw std::regex_error(std::regex_constants::error_collate);
    }
    return element.front();
}

// The bytes that sort like this one when letter case does not count.
ByteSet equivalentBytes(char element) {
    const auto traits = classicTraits();
    const auto primaryKey = [&traits](char byte) { return traits.transform_primary(&byte, &byte + 1); };
    ByteSet bytes;
    for (std::size_t byte = 0; byte < bytes.size(); ++byte) {
        bytes[byte] = primaryKey(static_cast<char>(byte)) == primaryKey(element);
    }
    return bytes;
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
