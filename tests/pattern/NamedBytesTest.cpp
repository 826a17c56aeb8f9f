#include "pattern/NamedBytes.h"

#include <gmock/gmock.h>

#include <functional>
#include <iterator>
#include <locale>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace brisk {
namespace {

char toByte(std::size_t number) {
    return static_cast<char>(number);
}

TEST(NamedBytesTest, FurtherNamesOfThePortableCharacterSetAreUnknown) {
    for (const char* name : {"hyphen-minus", "full-stop", "solidus", "low-line", "left-brace", "BEL", "CR"}) {
        EXPECT_EQ(findCollatingElement(name), std::nullopt) << name;
    }
}

TEST(NamedBytesTest, ByteIsItsOwnCollatingElement) {
    for (std::size_t byte = 0; byte < 256; ++byte) {
        EXPECT_EQ(findCollatingElement(std::string(1, toByte(byte))), toByte(byte));
    }
}

// The library that the tables were taken from; others differ from it.
#ifdef __GLIBCXX__

// Every name of a class, and every name that the portable character set has for its bytes.
constexpr char kClassNames[] = "alnum alpha blank cntrl d digit graph lower print punct s space upper w xdigit";
constexpr char kElementNames[] =
    "NUL SOH STX ETX EOT ENQ ACK alert BEL backspace BS tab HT newline LF vertical-tab VT form-feed FF "
    "carriage-return CR SO SI DLE DC1 DC2 DC3 DC4 NAK SYN ETB CAN EM SUB ESC IS4 FS IS3 GS IS2 RS IS1 US space "
    "exclamation-mark quotation-mark number-sign dollar-sign percent-sign ampersand apostrophe left-parenthesis "
    "right-parenthesis asterisk plus-sign comma hyphen hyphen-minus period full-stop slash solidus zero one two "
    "three four five six seven eight nine colon semicolon less-than-sign equals-sign greater-than-sign "
    "question-mark commercial-at left-square-bracket backslash reverse-solidus right-square-bracket circumflex "
    "circumflex-accent underscore low-line grave-accent left-brace left-curly-bracket vertical-line right-brace "
    "right-curly-bracket tilde DEL";

std::vector<std::string> words(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

// Every text of at most two bytes, the names, and the names with a byte more, less or in another's place.
void forEachNameNear(const std::string& names, const std::function<void(const std::string&)>& check) {
    check("");
    for (std::size_t first = 0; first < 256; ++first) {
        check(std::string(1, toByte(first)));
        for (std::size_t second = 0; second < 256; ++second) {
            check({toByte(first), toByte(second)});
        }
    }
    for (const std::string& name : words(names)) {
        check(name);
        for (std::size_t place = 0; place <= name.size(); ++place) {
            check(std::string(name).erase(place, 1));
            for (std::size_t byte = 0; byte < 256; ++byte) {
                check(std::string(name).insert(place, 1, toByte(byte)));
                check(std::string(name).replace(place, 1, 1, toByte(byte)));
            }
        }
    }
}

std::regex_traits<char> classicTraits() {
    std::regex_traits<char> traits;
    traits.imbue(std::locale::classic());
    return traits;
}

TEST(NamedBytesTest, ClassesAreTheStandardLibrarys) {
    const auto traits = classicTraits();
    std::set<std::string> found;
    const auto check = [&](const std::string& name) {
        const auto mask = traits.lookup_classname(name.begin(), name.end());
        const auto bytes = findClass(name);
        ASSERT_EQ(bytes.has_value(), mask != std::regex_traits<char>::char_class_type{})
            << ::testing::PrintToString(name);
        for (std::size_t byte = 0; bytes && byte < 256; ++byte) {
            ASSERT_EQ(bytes->test(byte), traits.isctype(toByte(byte), mask)) << name << ' ' << byte;
        }
        if (bytes) {
            found.insert(name);
        }
    };
    forEachNameNear(kClassNames, check);
    for (const std::string& name : words(kClassNames)) {
        EXPECT_TRUE(found.contains(name)) << name;
        // Letters of either case, in every combination.
        for (unsigned upper = 0; upper < 1u << name.size(); ++upper) {
            std::string mixed = name;
            for (std::size_t place = 0; place < name.size(); ++place) {
                mixed[place] = toByte(static_cast<std::size_t>(name[place]) - (upper >> place & 1) * std::size_t{0x20});
            }
            check(mixed);
        }
    }
}

TEST(NamedBytesTest, CollatingNamesAreTheStandardLibrarys) {
    const auto traits = classicTraits();
    std::set<char> named;
    forEachNameNear(kElementNames, [&](const std::string& name) {
        const std::string element = traits.lookup_collatename(name.begin(), name.end());
        if (!element.empty()) {
            ASSERT_EQ(findCollatingElement(name), element.front()) << ::testing::PrintToString(name);
            named.insert(element.front());
        } else if (name.size() != 1) {
            ASSERT_EQ(findCollatingElement(name), std::nullopt) << ::testing::PrintToString(name);
        }
    });
    EXPECT_EQ(named.size(), 128u) << "a byte's name was not tried";
}

TEST(NamedBytesTest, EquivalenceClassesAreTheStandardLibrarys) {
    const auto traits = classicTraits();
    std::vector<std::string> keys;
    for (std::size_t byte = 0; byte < 256; ++byte) {
        const char text = toByte(byte);
        keys.push_back(traits.transform_primary(&text, &text + 1));
    }
    for (std::size_t element = 0; element < 256; ++element) {
        for (std::size_t byte = 0; byte < 256; ++byte) {
            ASSERT_EQ(equivalentBytes(toByte(element)).test(byte), keys[byte] == keys[element])
                << element << ' ' << byte;
        }
    }
}

#endif

} // namespace
} // namespace brisk
