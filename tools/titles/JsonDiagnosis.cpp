#include "tools/titles/JsonDiagnosis.h"

#include "tools/titles/AsciiText.h"

#include <algorithm>
#include <cctype>
#include <optional>

namespace brisk::workbench {

namespace {

constexpr char kSyntax[] = "json-syntax";
constexpr char kEncoding[] = "json-encoding";

bool isBlank(char byte) {
    return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r';
}

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

bool isHexadecimal(char byte) {
    return std::isxdigit(static_cast<unsigned char>(byte)) != 0;
}

bool isLetter(char byte) {
    return std::isalpha(static_cast<unsigned char>(byte)) != 0;
}

// The length of the UTF-8 character that begins here; 0 when none does.
std::size_t characterLength(std::string_view text) {
    const auto byteAt = [text](std::size_t index) {
        return index < text.size() ? static_cast<unsigned char>(text[index]) : 0U;
    };
    const auto isTail = [&](std::size_t index) { return (byteAt(index) & 0xC0U) == 0x80U; };
    const unsigned first = byteAt(0);
    if (first < 0x80) {
        return 1;
    }
    if (first >= 0xC2 && first <= 0xDF) {
        return isTail(1) ? 2 : 0;
    }
    if (first >= 0xE0 && first <= 0xEF) {
        const bool isShortest = first != 0xE0 || byteAt(1) >= 0xA0;
        const bool isNoSurrogate = first != 0xED || byteAt(1) < 0xA0;
        return isTail(1) && isTail(2) && isShortest && isNoSurrogate ? 3 : 0;
    }
    if (first >= 0xF0 && first <= 0xF4) {
        const bool isInRange = (first != 0xF0 || byteAt(1) >= 0x90) && (first != 0xF4 || byteAt(1) < 0x90);
        return isTail(1) && isTail(2) && isTail(3) && isInRange ? 4 : 0;
    }
    return 0;
}

JsonFault encodingFault(std::size_t offset) {
    return {offset, kEncoding,
            "this byte is no UTF-8: the file seems to be saved in another encoding (Latin-1, Windows-1252); save it as "
            "UTF-8"};
}

// A \u escape's four digits; nothing where they are not there.
std::optional<unsigned> escapedUnit(std::string_view text, std::size_t backslash) {
    if (backslash + 6 > text.size() || text[backslash] != '\\' || text[backslash + 1] != 'u' ||
        !std::all_of(text.begin() + static_cast<std::ptrdiff_t>(backslash) + 2,
                     text.begin() + static_cast<std::ptrdiff_t>(backslash) + 6, isHexadecimal)) {
        return std::nullopt;
    }
    return static_cast<unsigned>(std::stoul(std::string(text.substr(backslash + 2, 4)), nullptr, 16));
}

// The fault of the string that begins at the offset, which has one.
JsonFault diagnoseString(std::string_view text, std::size_t begin) {
    for (std::size_t at = begin + 1; at < text.size();) {
        const char byte = text[at];
        if (byte == '\n' || byte == '\r') {
            return {begin, kSyntax, "this text is not closed: its quotation mark is missing before the line ends"};
        }
        if (byte == '\t') {
            return {at, kSyntax, "a tab may not stand in a text as it is; write \\t"};
        }
        if (static_cast<unsigned char>(byte) < 0x20) {
            return {at, kSyntax, "a control character may not stand in a text as it is; write \\u00XX"};
        }
        if (byte == '"') {
            break;
        }
        if (byte != '\\') {
            const std::size_t length = characterLength(text.substr(at));
            if (length == 0) {
                return encodingFault(at);
            }
            at += length;
            continue;
        }
        const char letter = at + 1 < text.size() ? text[at + 1] : '\0';
        if (letter == 'u') {
            const auto unit = escapedUnit(text, at);
            if (!unit) {
                return {at, kSyntax, "\\u needs four hexadecimal digits"};
            }
            const bool isHigh = *unit >= 0xD800 && *unit <= 0xDBFF;
            const auto low = isHigh ? escapedUnit(text, at + 6) : std::nullopt;
            if ((*unit >= 0xDC00 && *unit <= 0xDFFF) || (isHigh && (!low || *low < 0xDC00 || *low > 0xDFFF))) {
                return {at, kSyntax, "this is half of a surrogate pair; its other half is missing"};
            }
            at += isHigh ? 12 : 6;
            continue;
        }
        if (std::string_view("\"\\/bfnrt").find(letter) == std::string_view::npos || letter == '\0') {
            return {at, kSyntax,
                    "JSON has no escape '\\" + std::string(letter ? 1 : 0, letter) +
                        "'; a backslash itself is written twice: \"\\\\" + std::string(letter ? 1 : 0, letter) + "\""};
        }
        at += 2;
    }
    return {begin, kSyntax, "this text is not closed: its quotation mark is missing"};
}

JsonFault diagnoseNumber(std::string_view text, std::size_t begin) {
    std::size_t at = begin;
    if (text[at] == '-') {
        ++at;
    }
    if (at + 1 < text.size() && text[at] == '0' && (isDigit(text[at + 1]) || text[at + 1] == 'x')) {
        return {begin, kSyntax,
                text[at + 1] == 'x' ? "JSON has no hexadecimal numbers; write a decimal one"
                                    : "a number has no leading zeros"};
    }
    return {begin, kSyntax, "this is no JSON number; write digits, as 1920, -1 or 0.5"};
}

JsonFault diagnoseWord(std::string_view text, std::size_t begin) {
    std::size_t end = begin;
    while (end < text.size() && (isLetter(text[end]) || isDigit(text[end]) || text[end] == '_')) {
        ++end;
    }
    const std::string word(text.substr(begin, end - begin));
    const std::string lower = lowered(word);
    if (lower == "true" || lower == "false" || lower == "null") {
        return {begin, kSyntax, "write " + lower + " in small letters"};
    }
    if (lower == "none") {
        return {begin, kSyntax, "write null instead of " + word};
    }
    return {begin, kSyntax, "a text stands in quotation marks: \"" + word + "\""};
}

// Where the text begins whose closing quotation mark stands in front of `end`. No text goes over a line's end.
std::size_t beginOfText(std::string_view text, std::size_t end) {
    const std::size_t line = text.rfind('\n', end - 1);
    std::size_t begin = end;
    bool isInside = false;
    for (std::size_t at = line == std::string_view::npos ? 0 : line + 1; at < end; ++at) {
        if (text[at] == '\\' && isInside) {
            ++at;
        } else if (text[at] == '"') {
            isInside = !isInside;
            begin = isInside ? at : begin;
        }
    }
    return begin;
}

// Characters that look like others. Nothing for the rest.
const char* describeLookalike(std::string_view text) {
    struct Lookalike {
        std::string_view bytes;
        const char* message;
    };
    static constexpr char kQuote[] = "this is a typographic quotation mark; a text stands in straight ones, \"";
    static constexpr char kBlank[] =
        "this only looks like a blank: it is another character (no-break space); write a blank";
    static constexpr Lookalike kLookalikes[] = {
        {"\xE2\x80\x98", kQuote},
        {"\xE2\x80\x99", kQuote},
        {"\xE2\x80\x9A", kQuote},
        {"\xE2\x80\x9C", kQuote},
        {"\xE2\x80\x9D", kQuote},
        {"\xE2\x80\x9E", kQuote},
        {"\xC2\xAB", kQuote},
        {"\xC2\xBB", kQuote},
        {"\xC2\xA0", kBlank},
        {"\xE2\x80\xAF", kBlank},
        {"\xE2\x80\x89", kBlank},
        {"\xE3\x80\x80", kBlank},
        {"\xEF\xBB\xBF", "a byte-order mark may stand at the beginning of the file only, and once"},
        {"\xE2\x80\x8B", "an invisible character (zero-width space) stands here; take it away"},
    };
    for (const Lookalike& each : kLookalikes) {
        if (text.starts_with(each.bytes)) {
            return each.message;
        }
    }
    return nullptr;
}

const char* bracketsName(char opening) {
    return opening == '{' ? "object" : "array";
}

// What stands where a key or a value should.
JsonFault diagnoseToken(std::string_view text, std::size_t at, const JsonPosition& position, bool isKeyExpected) {
    const char byte = text[at];
    if (byte == '"') {
        return diagnoseString(text, at);
    }
    if (byte == '\'') {
        return {at, kSyntax, "a text stands in double quotation marks, not in single ones"};
    }
    if (isKeyExpected) {
        return {at, kSyntax, "a key in quotation marks should stand here"};
    }
    if (byte == '-' || isDigit(byte)) {
        return diagnoseNumber(text, at);
    }
    if (byte == '+' || byte == '.') {
        return {at, kSyntax, "a number begins with a digit or a minus sign"};
    }
    if (byte == ']' || byte == '}') {
        const bool isOwn = (byte == ']') == (position.container == '[');
        return {at, kSyntax, isOwn ? "a value is missing here" : "this bracket closes nothing"};
    }
    if (isLetter(byte)) {
        return diagnoseWord(text, at);
    }
    return {at, kSyntax, "no value begins with this"};
}

} // namespace

JsonFault diagnoseJson(std::string_view text, const JsonPosition& position) {
    std::size_t at = position.cursor;
    std::optional<std::size_t> separator; // the last of commas and colons between the two tokens
    for (; at < text.size(); ++at) {
        if (text[at] == ',' || text[at] == ':') {
            const bool isColon = text[at] == ':';
            if (separator || isColon != position.isAfterKey) {
                break;
            }
            separator = at;
        } else if (!isBlank(text[at])) {
            break;
        }
    }
    if (at == text.size()) {
        if (position.container != 0) {
            return {position.containerBegin, kSyntax,
                    std::string("this ") + bracketsName(position.container) +
                        " is never closed: the file ends before its '" + (position.container == '{' ? '}' : ']') + "'"};
        }
        return {0, kSyntax, "the file is empty; a database is an array of titles: []"};
    }
    const char byte = text[at];
    if (byte == '#' || (byte == '/' && at + 1 < text.size() && (text[at + 1] == '/' || text[at + 1] == '*'))) {
        return {at, "json-comment", "JSON has no comments; the service does not start with one"};
    }
    if (byte == '\0') {
        return {at, kEncoding, "a NUL byte: the file seems to be saved as UTF-16; save it as UTF-8"};
    }
    if (static_cast<unsigned char>(byte) >= 0x80 && characterLength(text.substr(at)) == 0) {
        return encodingFault(at);
    }
    if (const char* message = describeLookalike(text.substr(at))) {
        return {at, kSyntax, message};
    }
    if (position.isAfterRoot) {
        return {at, kSyntax, "the database has ended before this; nothing may follow"};
    }
    const bool isFirst = !position.isAfterKey && position.cursor > 0 &&
                         (text[position.cursor - 1] == '{' || text[position.cursor - 1] == '[') &&
                         position.containerBegin + 1 == position.cursor;
    if ((byte == '}' || byte == ']') && separator && text[*separator] == ',') {
        return {*separator, kSyntax, "a comma before the closing bracket; take it away"};
    }
    if ((byte == '}' || byte == ']') && position.container != 0 && (byte == '}') != (position.container == '{') &&
        !position.isAfterKey) {
        return {position.cursor, kSyntax,
                std::string("this ") + bracketsName(position.container) + " is not closed: '" +
                    (position.container == '{' ? '}' : ']') + "' is missing here"};
    }
    // Letters right behind a text: the quotation mark that seems to close it opens or belongs to something else.
    const bool isBehindText = position.cursor > 0 && text[position.cursor - 1] == '"';
    if (isBehindText && at == position.cursor && (isLetter(byte) || isDigit(byte) || byte == '_')) {
        return {
            beginOfText(text, position.cursor), kSyntax,
            "this text is not closed where it should be: a quotation mark is missing at its end, or one inside of it "
            "is not written \\\""};
    }
    if (byte == ':' && position.container == '[' && isBehindText && !position.isAfterKey && !separator) {
        const std::size_t key = beginOfText(text, position.cursor);
        const std::size_t last = text.find_last_not_of(" \t\r\n", key == 0 ? 0 : key - 1);
        return {text[last] == ',' ? last : key, kSyntax, "this array is not closed: ']' is missing here"};
    }
    if (byte == ',' || byte == ':') {
        return {at, kSyntax,
                byte == ',' ? (position.isAfterKey && !separator ? "a colon and a value are missing before this comma"
                                                                 : "nothing stands before this comma")
                            : "a colon stands only between a key and its value"};
    }
    if (position.isAfterKey && !separator) {
        return {position.cursor, kSyntax, "a colon is missing behind this key"};
    }
    if (at == position.cursor && at > 0 && isDigit(text[at - 1])) {
        const std::size_t begin = text.find_last_not_of("0123456789", at - 1) + 1;
        return diagnoseNumber(text, begin > 0 && text[begin - 1] == '-' ? begin - 1 : begin);
    }
    if (!separator && !isFirst && position.container != 0) {
        return {position.cursor, kSyntax, "a comma is missing here"};
    }
    return diagnoseToken(text, at, position, position.container == '{' && !position.isAfterKey);
}

} // namespace brisk::workbench
