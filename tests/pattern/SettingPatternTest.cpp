#include "pattern/SettingPattern.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <utility>
#include <vector>

namespace brisk {
namespace {

using testing::ElementsAre;
using testing::Optional;
using namespace std::string_literals;

// The bytes that the pattern matches as a whole text.
std::string bytesMatchedBy(const std::string& pattern) {
    const SettingPattern setting(pattern);
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        const std::string text(1, static_cast<char>(byte));
        const auto match = setting.search(text);
        if (match && match->front() == text) {
            bytes += text;
        }
    }
    return bytes;
}

std::string bytesBetween(int first, int last) {
    std::string bytes;
    for (int byte = first; byte <= last; ++byte) {
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

std::string replaced(const std::string& pattern, const std::string& text, const std::string& format) {
    return SettingPattern(pattern).replace(text, format);
}

TEST(SettingPatternTest, FindsTheFirstMatchWithItsGroups) {
    const std::string text = "[Display]\nWidth=1280\nWidth=800\n";
    const auto match = SettingPattern(R"((Width=)(\d+)(\r?\n|$))").search(text);
    EXPECT_THAT(match, Optional(ElementsAre("Width=1280\n", "Width=", "1280", "\n")));
    EXPECT_EQ(match->front().data(), text.data() + 10);
}

TEST(SettingPatternTest, TextWithoutTheSettingHasNoMatch) {
    EXPECT_EQ(SettingPattern("Width=").search("Height=720"), std::nullopt);
    EXPECT_EQ(SettingPattern("Width=").search(""), std::nullopt);
    EXPECT_EQ(SettingPattern("width=").search("Width="), std::nullopt);
}

TEST(SettingPatternTest, EmptyPatternMatchesTheEmptyTextAtTheBeginning) {
    EXPECT_THAT(SettingPattern("").search("abc"), Optional(ElementsAre("")));
    EXPECT_THAT(SettingPattern("").search({}), Optional(ElementsAre("")));
}

TEST(SettingPatternTest, GroupThatTookNoPartIsEmpty) {
    EXPECT_THAT(SettingPattern("(a)|(b)|(c)").search("b"), Optional(ElementsAre("b", "", "b", "")));
}

TEST(SettingPatternTest, RepeatedGroupKeepsItsLastText) {
    EXPECT_THAT(SettingPattern("(?:(a)|(b))*").search("ab"), Optional(ElementsAre("ab", "a", "b")));
}

TEST(SettingPatternTest, PatternCanBeMoved) {
    SettingPattern pattern("a");
    pattern = SettingPattern("b");
    const SettingPattern moved(std::move(pattern));
    EXPECT_THAT(moved.search("ab"), Optional(ElementsAre("b")));
}

TEST(SettingPatternTest, DotMatchesEverythingButLineEnds) {
    EXPECT_EQ(bytesMatchedBy("."), bytesBetween(0, '\n' - 1) + "\x0B\x0C" + bytesBetween('\r' + 1, 255));
}

TEST(SettingPatternTest, CaretAndDollarMatchOnlyAtTheEndsOfTheText) {
    EXPECT_EQ(SettingPattern("^b").search("a\nb"), std::nullopt);
    EXPECT_EQ(SettingPattern("a$").search("a\n"), std::nullopt);
    EXPECT_THAT(SettingPattern("^a\nb$").search("a\nb"), Optional(ElementsAre("a\nb")));
    EXPECT_EQ(replaced("^a|b$", "aab\nabb", "-"), "-ab\nab-");
}

TEST(SettingPatternTest, ClassEscapesAreThoseOfTheCLocale) {
    const std::string digits = bytesBetween('0', '9');
    const std::string upper = bytesBetween('A', 'Z');
    const std::string lower = bytesBetween('a', 'z');
    EXPECT_EQ(bytesMatchedBy("\\d"), digits);
    EXPECT_EQ(bytesMatchedBy("\\s"), "\t\n\v\f\r ");
    EXPECT_EQ(bytesMatchedBy("\\w"), digits + upper + "_" + lower);
    EXPECT_EQ(bytesMatchedBy("\\D"), bytesBetween(0, '0' - 1) + bytesBetween('9' + 1, 255));
    EXPECT_EQ(bytesMatchedBy("\\S"), bytesBetween(0, 8) + bytesBetween(14, 31) + bytesBetween(33, 255));
    EXPECT_EQ(bytesMatchedBy("[^\\W\\d]"), upper + "_" + lower);
}

TEST(SettingPatternTest, NamedClassesAreThoseOfTheCLocale) {
    EXPECT_EQ(bytesMatchedBy("[[:alpha:]]"), bytesBetween('A', 'Z') + bytesBetween('a', 'z'));
    EXPECT_EQ(bytesMatchedBy("[[:upper:][:digit:]]"), bytesBetween('0', '9') + bytesBetween('A', 'Z'));
    EXPECT_EQ(bytesMatchedBy("[[:xdigit:]]"), bytesBetween('0', '9') + "ABCDEFabcdef");
    EXPECT_EQ(bytesMatchedBy("[[:blank:]]"), "\t ");
    EXPECT_EQ(bytesMatchedBy("[[:cntrl:]]"), bytesBetween(0, 31) + "\x7F");
    EXPECT_EQ(bytesMatchedBy("[[:punct:]]"), "!\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~");
    EXPECT_EQ(bytesMatchedBy("[^[:print:]]"), bytesBetween(0, 31) + bytesBetween(127, 255));
}

TEST(SettingPatternTest, BracketExpressionIsASetOfBytes) {
    EXPECT_EQ(bytesMatchedBy("[a-cx]"), "abcx");
    EXPECT_EQ(bytesMatchedBy("[]"), "");
    EXPECT_EQ(bytesMatchedBy("[^]"), bytesBetween(0, 255));
    EXPECT_EQ(bytesMatchedBy("[-a]"), "-a");
    EXPECT_EQ(bytesMatchedBy("[a-]"), "-a");
    EXPECT_EQ(bytesMatchedBy("[a-c-e]"), "-abce");
    EXPECT_EQ(bytesMatchedBy("[+--]"), "+,-");
    EXPECT_EQ(bytesMatchedBy("[\\d-]"), "-0123456789");
    EXPECT_EQ(bytesMatchedBy("[\\]\\-\\\\^.$|]"), "$-.\\]^|");
    EXPECT_EQ(bytesMatchedBy("[\\b\\t]"), "\b\t");
    EXPECT_EQ(bytesMatchedBy("[[.hyphen.][.a.]-c]"), "-abc");
    EXPECT_EQ(bytesMatchedBy("[[=a=]]"), "Aa");
}

TEST(SettingPatternTest, BracketExpressionEndsAtItsFirstClosingBracket) {
    EXPECT_THAT(SettingPattern("[^]a]").search("ba]"), Optional(ElementsAre("ba]")));
    EXPECT_EQ(SettingPattern("[]a]").search("]a]"), std::nullopt);
}

TEST(SettingPatternTest, ByteRangeCountsBytesFrom0To255) {
    EXPECT_EQ(bytesMatchedBy("[\\x20-\\xff]"), bytesBetween(0x20, 0xFF));
    EXPECT_EQ(bytesMatchedBy("[\x7e-\x81]"), "\x7e\x7f\x80\x81");
}

TEST(SettingPatternTest, EscapesStandForControlCharactersAndCodes) {
    EXPECT_EQ(bytesMatchedBy("\\t|\\n|\\v|\\f|\\r"), "\t\n\v\f\r");
    EXPECT_EQ(bytesMatchedBy("\\cA|\\cj|\\cZ"), "\x01\n\x1A");
    EXPECT_EQ(bytesMatchedBy("\\x41|\\u0042|\\xfF"), "AB\xFF");
    EXPECT_EQ(bytesMatchedBy("\\0"), "\0"s);
}

TEST(SettingPatternTest, EveryOtherEscapeIsLiteral) {
    EXPECT_THAT(SettingPattern(R"(\<a\>\/\"\_\-\ \y)").search("<a>/\"_- y"), Optional(ElementsAre("<a>/\"_- y")));
    EXPECT_THAT(SettingPattern(R"(\^\$\\\.\*\+\?\(\)\[\]\{\}\|)").search("^$\\.*+?()[]{}|"),
                Optional(ElementsAre("^$\\.*+?()[]{}|")));
    EXPECT_THAT(SettingPattern("]}").search("]}"), Optional(ElementsAre("]}")));
    EXPECT_THAT(SettingPattern("#a b'\"<%").search("#a b'\"<%"), Optional(ElementsAre("#a b'\"<%")));
}

TEST(SettingPatternTest, NulAndHighBytesAreOrdinaryInPatternsAndTexts) {
    EXPECT_THAT(SettingPattern("\0(.)\xC3"s).search("a\0\x80\xC3z"s), Optional(ElementsAre("\0\x80\xC3"s, "\x80")));
    EXPECT_EQ(replaced("\xC3\xBC", "\xC3\xBC\0\xC3\xBC"s, "\0"s), "\0\0\0"s);
}

TEST(SettingPatternTest, QuantifiersTakeAsMuchOrAsLittleAsTheyMay) {
    EXPECT_THAT(SettingPattern("(a*)(a*)").search("aaa"), Optional(ElementsAre("aaa", "aaa", "")));
    EXPECT_THAT(SettingPattern("(a*?)(a*)").search("aaa"), Optional(ElementsAre("aaa", "", "aaa")));
    EXPECT_THAT(SettingPattern("(a+?)(a?"
                               "?)(a?)")
                    .search("aaa"),
                Optional(ElementsAre("aa", "a", "", "a")));
    EXPECT_THAT(SettingPattern("(a{2})(a{1,2})(a{1,})").search("aaaaaa"),
                Optional(ElementsAre("aaaaaa", "aa", "aa", "aa")));
    EXPECT_THAT(SettingPattern("(a{1,2}?)(a{0,})b").search("aaab"), Optional(ElementsAre("aaab", "a", "aa")));
    EXPECT_THAT(SettingPattern("(a){0}b").search("ab"), Optional(ElementsAre("b", "")));
    EXPECT_EQ(SettingPattern("^a{2,3}$").search("aaaa"), std::nullopt);
}

TEST(SettingPatternTest, GreedyRepetitionLeavesWhatTheTextBehindItTakes) {
    EXPECT_EQ(replaced(R"((=)([^;\n]*)( ;))", "a= 1 2 ;\nb= ;\nc=;\nd=3 ", "$017$3"), "a=7 ;\nb=7 ;\nc=;\nd=3 ");
    EXPECT_THAT(SettingPattern(R"((\w*)(b=))").search("a, ab="), Optional(ElementsAre("ab=", "a", "b=")));
    EXPECT_THAT(SettingPattern("(a{2,})(aab)").search("aaab aaaab"), Optional(ElementsAre("aaaab", "aa", "aab")));
    EXPECT_THAT(SettingPattern("(a{0,2})(ab)").search("aaaab"), Optional(ElementsAre("aaab", "aa", "ab")));
    EXPECT_THAT(SettingPattern("(?:a*ab)*(c)").search("aabaabc"), Optional(ElementsAre("aabaabc", "c")));
    EXPECT_THAT(SettingPattern("(?=(a*)ab)a").search("aaab"), Optional(ElementsAre("a", "aa")));
}

TEST(SettingPatternTest, LazyCountedBeginningMissesNoPlace) {
    EXPECT_THAT(SettingPattern("a{0,2}?[ab]x").search("aaabx"), Optional(ElementsAre("aabx")));
}

TEST(SettingPatternTest, FirstFittingAlternativeWins) {
    EXPECT_THAT(SettingPattern("a|ab").search("ab"), Optional(ElementsAre("a")));
    EXPECT_THAT(SettingPattern("(|a)b").search("ab"), Optional(ElementsAre("ab", "a")));
    EXPECT_THAT(SettingPattern("x(?:|)").search("x"), Optional(ElementsAre("x")));
}

TEST(SettingPatternTest, LookaheadsTestWithoutTaking) {
    EXPECT_THAT(SettingPattern("a(?=(b))").search("acab"), Optional(ElementsAre("a", "b")));
    EXPECT_EQ(replaced("a(?!b)", "acab", "-"), "-cab");
    EXPECT_EQ(replaced("a(?=$)", "aa", "-"), "a-");
    EXPECT_EQ(replaced("a(?=\\b)", "aa a", "-"), "a- -");
}

TEST(SettingPatternTest, WordBoundariesLieBetweenWordBytesAndOthers) {
    EXPECT_EQ(replaced("\\b", "a_1 \xC3z", "|"), "|a_1| \xC3|z|");
    EXPECT_EQ(replaced("\\Ba", "aa a", "-"), "a- a");
}

TEST(SettingPatternTest, BackReferenceMatchesItsGroupsText) {
    EXPECT_THAT(SettingPattern("([\"'])(.*)\\1").search("x='a\"b'"), Optional(ElementsAre("'a\"b'", "'", "a\"b")));
    EXPECT_THAT(SettingPattern("(.)(.)(.)(.)(.)(.)(.)(.)(.)(.)\\10\\2")
                    .search("0123456789"
                            "91"),
                Optional(testing::Contains("012345678991")));
}

TEST(SettingPatternTest, BackReferenceToAGroupThatTookNoPartMatchesNothing) {
    EXPECT_THAT(SettingPattern("(?:(a)|b)\\1c").search("bc"), Optional(ElementsAre("bc", "")));
    EXPECT_THAT(SettingPattern("(?:(a)|b)\\1c").search("aac"), Optional(ElementsAre("aac", "a")));
}

TEST(SettingPatternTest, ReplacesEveryMatch) {
    EXPECT_EQ(replaced("(Width=)(\\d+)()", "Width=1280\nWidth=800\n", "$1$991920$3"), "Width=1920\nWidth=1920\n");
}

TEST(SettingPatternTest, LeavesATextWithoutAMatchUnchanged) {
    EXPECT_EQ(replaced("(Width=)(\\d+)()", "Height=7\0\r\n"s, "$1$991920$3"), "Height=7\0\r\n"s);
    EXPECT_EQ(replaced("a", "", "b"), "");
}

TEST(SettingPatternTest, EmptyMatchIsFollowedByALongerOneThereOrByTheNextPlace) {
    EXPECT_EQ(replaced("", "ab", "-"), "-a-b-");
    EXPECT_EQ(replaced("a*?", "aab", "-"), "-----b-");
    EXPECT_EQ(replaced("b*", "abb", "-"), "-a--");
    EXPECT_EQ(replaced("", "", "-"), "-");
}

TEST(SettingPatternTest, ExpandsTheReplacementFormat) {
    const std::vector<std::pair<std::string, std::string>> expansions = {
        {"", ""},
        {"plain \\1", "plain \\1"},
        {"$$", "$"},
        {"$&$&", "b=cb=c"},
        {"$`", "a "},
        {"$'", " d"},
        {"$1$2", "bc"},
        {"$3$12", ""},
        {"$01$02", "bc"},
        {"$021", "c1"},
        {"$991920", "1920"},
        {"$0$00", "b=cb=c"},
        {"$", "$"},
        {"$x$-", "$x$-"},
        {"$$1", "$1"},
        {"a\0b"s, "a\0b"s},
    };
    for (const auto& [format, expansion] : expansions) {
        EXPECT_EQ(replaced("(\\w)=(\\w)", "a b=c d", format), "a " + expansion + " d") << format;
    }
}

TEST(SettingPatternTest, TextBeforeAMatchBeginsWhereTheLastMatchEnded) {
    EXPECT_EQ(replaced("=", "a=b=c", "<$`|$'>"), "a<a|b=c>b<b|c>c");
}

TEST(SettingPatternTest, RejectsWhatTheGrammarDoesNotKnow) {
    namespace codes = std::regex_constants;
    const std::vector<std::pair<std::string, codes::error_type>> faults = {
        {"(", codes::error_paren},
        {")", codes::error_paren},
        {"(?a)", codes::error_paren},
        {"(?", codes::error_paren},
        {"(?<=a)", codes::error_paren},
        {"[a", codes::error_brack},
        {"[[", codes::error_brack},
        {"[b-a]", codes::error_range},
        {"[a-\\d]", codes::error_range},
        {"[\\w-z]", codes::error_range},
        {"[[:letter:]]", codes::error_ctype},
        {"[[:alpha", codes::error_ctype},
        {"[[:alpha:", codes::error_ctype},
        {"[[.nothing.]]", codes::error_collate},
        {"[[=nothing=]]", codes::error_collate},
        {"[\\1]", codes::error_escape},
        {"[\\B]", codes::error_escape},
        {"a\\", codes::error_escape},
        {"\\x4", codes::error_escape},
        {"\\xg1", codes::error_escape},
        {"\\u004", codes::error_escape},
        {"\\u0100", codes::error_escape},
        {"\\c1", codes::error_escape},
        {"\\c", codes::error_escape},
        {"\\01", codes::error_escape},
        {"\\1", codes::error_backref},
        {"(a)\\2", codes::error_backref},
        {"(a\\1)", codes::error_backref},
        {"\\1(a)", codes::error_backref},
        {"(a)\\99999999999999999999", codes::error_backref},
        {"*", codes::error_badrepeat},
        {"a|+", codes::error_badrepeat},
        {"(?)", codes::error_paren},
        {"^*", codes::error_badrepeat},
        {"\\b?", codes::error_badrepeat},
        {"(?=a)*", codes::error_badrepeat},
        {"a**", codes::error_badrepeat},
        {"a{2}{3}", codes::error_badrepeat},
        {"a+?+", codes::error_badrepeat},
        {"{1}", codes::error_badrepeat},
        {"a{", codes::error_badbrace},
        {"a{,3}", codes::error_badbrace},
        {"a{x}", codes::error_badbrace},
        {"a{3,1}", codes::error_badbrace},
        {"a{1", codes::error_brace},
        {"a{1,2", codes::error_brace},
        {"a{1,2x}", codes::error_brace},
    };
    for (const auto& [pattern, code] : faults) {
        try {
            const SettingPattern setting(pattern);
            ADD_FAILURE() << pattern << " was accepted";
        } catch (const std::regex_error& error) {
            EXPECT_EQ(error.code(), code) << pattern;
        }
    }
}

} // namespace
} // namespace brisk
