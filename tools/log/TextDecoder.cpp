#include "tools/log/TextDecoder.h"

namespace brisk::logbook {

namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

// Of UTF-16 without a mark: every other byte is zero.
bool alternates(std::string_view text, std::size_t zero) {
    return text[zero] == '\0' && text[zero + 2] == '\0' && text[1 - zero] != '\0' && text[3 - zero] != '\0';
}

void appendUtf8(std::string& text, std::uint32_t character) {
    const auto append = [&text](std::uint32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
    if (character < 0x80) {
        append(character);
    } else if (character < 0x800) {
        append(0xC0U | (character >> 6U));
        append(0x80U | (character & 0x3FU));
    } else if (character < 0x10000) {
        append(0xE0U | (character >> 12U));
        append(0x80U | ((character >> 6U) & 0x3FU));
        append(0x80U | (character & 0x3FU));
    } else {
        append(0xF0U | (character >> 18U));
        append(0x80U | ((character >> 12U) & 0x3FU));
        append(0x80U | ((character >> 6U) & 0x3FU));
        append(0x80U | (character & 0x3FU));
    }
}

} // namespace

std::string_view TextDecoder::decode(std::string_view bytes) {
    if (encoding == Encoding::Bytes) {
        return bytes;
    }
    if (encoding != Encoding::Undecided) {
        return decodeUnits(bytes);
    }
    front += bytes;
    if (front.size() < 4) {
        return {};
    }
    const std::string_view text = front;
    const bool hasMark = text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF");
    if (hasMark || alternates(text, 0) || alternates(text, 1)) {
        encoding = text.front() == '\xFF' || alternates(text, 1) ? Encoding::LittleEndian : Encoding::BigEndian;
        return decodeUnits(text.substr(hasMark ? 2 : 0));
    }
    encoding = Encoding::Bytes;
    return text.substr(text.starts_with(kUtf8Mark) ? kUtf8Mark.size() : 0);
}

std::string_view TextDecoder::finish() {
    return encoding == Encoding::Undecided ? std::string_view(front) : std::string_view();
}

std::string_view TextDecoder::decodeUnits(std::string_view bytes) {
    decoded.clear();
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        if (halfUnit < 0) {
            halfUnit = value;
            continue;
        }
        const auto other = static_cast<std::uint32_t>(halfUnit);
        halfUnit = -1;
        appendUnit(encoding == Encoding::LittleEndian ? other | (static_cast<std::uint32_t>(value) << 8U)
                                                      : (other << 8U) | value);
    }
    return decoded;
}

void TextDecoder::appendUnit(std::uint32_t unit) {
    constexpr std::uint32_t kReplacement = 0xFFFD;
    if (unit >= 0xDC00 && unit < 0xE000) {
        appendUtf8(decoded,
                   highSurrogate == 0 ? kReplacement : 0x10000 + ((highSurrogate - 0xD800) << 10U) + (unit - 0xDC00));
        highSurrogate = 0;
        return;
    }
    if (highSurrogate != 0) {
        appendUtf8(decoded, kReplacement);
        highSurrogate = 0;
    }
    if (unit >= 0xD800 && unit < 0xDC00) {
        highSurrogate = unit;
    } else {
        appendUtf8(decoded, unit);
    }
}

} // namespace brisk::logbook
