#include "pattern/NamedBytes.h"

#include <algorithm>
#include <iterator>

namespace brisk {

namespace {

using namespace std::string_view_literals;

// The ranges are pairs of their first and last bytes.
struct NamedClass {
    std::string_view name;
    std::string_view ranges;
};

constexpr NamedClass kClasses[] = {
    {"alnum", "09AZaz"}, {"alpha", "AZaz"},     {"blank", "\t\t  "},  {"cntrl", "\0\x1F\x7F\x7F"sv},
    {"d", "09"},         {"digit", "09"},       {"graph", "!~"},      {"lower", "az"},
    {"print", " ~"},     {"punct", "!/:@[`{~"}, {"s", "\t\r  "},      {"space", "\t\r  "},
    {"upper", "AZ"},     {"w", "09AZ__az"},     {"xdigit", "09AFaf"},
};

// One name for each byte from 0 to 0x7F, in their order: the portable character set's, and one where it has two.
constexpr std::string_view kElements =
    "NUL SOH STX ETX EOT ENQ ACK alert backspace tab newline vertical-tab form-feed carriage-return SO SI DLE DC1 "
    "DC2 DC3 DC4 NAK SYN ETB CAN EM SUB ESC IS4 IS3 IS2 IS1 space exclamation-mark quotation-mark number-sign "
    "dollar-sign percent-sign ampersand apostrophe left-parenthesis right-parenthesis asterisk plus-sign comma "
    "hyphen period slash zero one two three four five six seven eight nine colon semicolon less-than-sign "
    "equals-sign greater-than-sign question-mark commercial-at A B C D E F G H I J K L M N O P Q R S T U V W X Y Z "
    "left-square-bracket backslash right-square-bracket circumflex underscore grave-accent a b c d e f g h i j k l "
    "m n o p q r s t u v w x y z left-curly-bracket vertical-line right-curly-bracket tilde DEL";

bool isLetter(char byte) {
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

char otherCase(char letter) {
    return static_cast<char>(letter ^ 0x20);
}

bool isEqualWithoutCase(char left, char right) {
    return left == right || (isLetter(left) && otherCase(left) == right);
}

std::size_t indexOf(char byte) {
    return static_cast<unsigned char>(byte);
}

} // namespace

std::optional<ByteSet> findClass(std::string_view name) {
    const auto found = std::find_if(std::begin(kClasses), std::end(kClasses), [name](const NamedClass& named) {
        return std::equal(name.begin(), name.end(), named.name.begin(), named.name.end(), isEqualWithoutCase);
    });
    if (found == std::end(kClasses)) {
        return std::nullopt;
    }
    ByteSet bytes;
    for (std::size_t i = 0; i < found->ranges.size(); i += 2) {
        for (std::size_t byte = indexOf(found->ranges[i]); byte <= indexOf(found->ranges[i + 1]); ++byte) {
            bytes.set(byte);
        }
    }
    return bytes;
}

std::optional<char> findCollatingElement(std::string_view name) {
    if (name.size() == 1) {
        return name.front();
    }
    std::size_t byte = 0;
    for (std::size_t begin = 0; begin < kElements.size(); ++byte) {
        const std::size_t end = std::min(kElements.find(' ', begin), kElements.size());
        if (kElements.substr(begin, end - begin) == name) {
            return static_cast<char>(byte);
        }
        begin = end + 1;
    }
    return std::nullopt;
}

ByteSet equivalentBytes(char element) {
    ByteSet bytes;
    bytes.set(indexOf(element));
    if (isLetter(element)) {
        bytes.set(indexOf(otherCase(element)));
    }
    return bytes;
}

} // namespace brisk
