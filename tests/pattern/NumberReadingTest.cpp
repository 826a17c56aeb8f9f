#include "pattern/NumberReading.h"

#include "pattern/PatternAnalysis.h"
#include "pattern/PatternLengths.h"
#include "pattern/SettingPattern.h"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace brisk {
namespace {

bool canValueLackDigits(const std::string& value) {
    return canLackDigits(parsePattern("(\\nWidth=)" + value + "()"), 2);
}

bool isWithoutDigits(std::string_view text) {
    try {
        static_cast<void>(std::stoi(std::string(text)));
    } catch (const std::invalid_argument&) {
        return true;
    } catch (const std::out_of_range&) {
        return false;
    }
    return false;
}

// Small patterns of what matters for reading a number: a digit, a sign, white space, anything else.
class ValueGenerator {
public:
    ValueGenerator(unsigned seed, bool withDoubtfulTerms) : random(seed), isDoubtful(withDoubtfulTerms) {}

    std::string alternatives(int depth) {
        std::string pattern = sequence(depth);
        while (below(4) == 0) {
            pattern += '|' + sequence(depth);
        }
        return pattern;
    }

private:
    std::string sequence(int depth) {
        std::string pattern;
        for (std::size_t terms = below(4); terms > 0; --terms) {
            pattern += term(depth);
        }
        return pattern;
    }

    std::string term(int depth) {
        if (isDoubtful && below(5) == 0) {
            return oneOf({"^", "$", "\\b", "\\B", "(?=1)", "(?!-)", "(?:\\1)"});
        }
        const std::string atom =
            depth > 0 && below(4) == 0
                ? "(?:" + alternatives(depth - 1) + ')'
                : oneOf({"\\d", "1", "-", "[+-]", "\\s", " ", "a", "\\w", "\\W", ".", "[^ ]", "[]"});
        return atom + oneOf({"", "", "", "?", "*", "+", "*?", "{1,2}", "{0}"});
    }

    std::size_t below(std::size_t limit) { return random() % limit; }
    std::string oneOf(const std::vector<std::string>& choices) { return choices[below(choices.size())]; }

    std::mt19937 random;
    bool isDoubtful;
};

// All texts of at most four bytes, each kind of byte among them.
std::vector<std::string> shortTexts() {
    std::vector<std::string> texts{""};
    for (std::size_t index = 0; texts[index].size() < 4; ++index) {
        for (const char byte : {'1', '-', ' ', 'a', '='}) {
            texts.push_back(texts[index] + byte);
        }
    }
    return texts;
}

// Whether the pattern matches one of the texts in such a way that its second group has no digits.
bool someTextLacksDigits(const std::string& pattern, const std::vector<std::string>& texts) {
    const SettingPattern key(pattern);
    for (const std::string& text : texts) {
        const auto match = key.search(text);
        if (match && isWithoutDigits((*match)[2])) {
            return true;
        }
    }
    return false;
}

TEST(NumberReadingTest, ValueThatBeginsLikeANumberHasDigits) {
    for (const std::string value :
         {"(\\d+)", "(-?\\d+)", "(\\s*-?\\d+)", "([0-9]+)", "([0-9]{1,4})", "(\\d+(?:\\.\\d+)?)", "(\\d[^\\n]*)",
          "([+-]\\d|\\d\\w*)", "(\\d{1,99999})", "(\\d)+", "(?:(\\d)|[])"}) {
        EXPECT_FALSE(canValueLackDigits(value)) << value;
    }
}

TEST(NumberReadingTest, ValueThatMayBeginOtherwiseCanLackDigits) {
    for (const std::string value :
         {"(.*)", "([^\\n]*)", "(\\d*)", "(-?)", "(\\w+)", "([+-]?\\d*)", "(--\\d)", "(- \\d)", "(\\s*)", "(\\D\\d)",
          "([-\\d]+)", "(\\d+|auto)", "(-{1,2}\\d)", "()", "(\\.\\d+)"}) {
        EXPECT_TRUE(canValueLackDigits(value)) << value;
    }
}

TEST(NumberReadingTest, ValueThatMayTakeNoPartCanLackDigits) {
    for (const std::string value : {"(\\d)?", "(\\d)*", "(?:(\\d)|x)", "(?!(\\d))", "(\\d){0}"}) {
        EXPECT_TRUE(canValueLackDigits(value)) << value;
    }
    EXPECT_FALSE(canValueLackDigits("(?=(\\d))"));
}

TEST(NumberReadingTest, AssertionsAndReferencesAreDoubted) {
    EXPECT_FALSE(canValueLackDigits("(\\b\\d+$)"));
    EXPECT_TRUE(canValueLackDigits("((?=\\d)\\w+)"));
    EXPECT_TRUE(canValueLackDigits("(\\1\\d)"));
}

TEST(NumberReadingTest, GroupThatIsMissingIsNotDoubted) {
    EXPECT_FALSE(canLackDigits(parsePattern("(a)"), 2));
    EXPECT_FALSE(canLackDigits(parsePattern("a"), 0));
}

TEST(NumberReadingTest, GeneratedValuesLackDigitsWhereSomeTextShowsIt) {
    const std::vector<std::string> texts = shortTexts();
    int lacking = 0;
    for (unsigned seed = 0; seed < 400; ++seed) {
        const std::string value = '(' + ValueGenerator(seed, false).alternatives(1) + ')';
        const PatternTree tree = parsePattern("()" + value);
        if (lengthsOf(tree).front().minimum > 4) {
            continue;
        }
        const bool isShown = someTextLacksDigits("^()" + value + "$", texts);
        lacking += isShown ? 1 : 0;
        EXPECT_EQ(canLackDigits(tree, 2), isShown) << value << ", seed " << seed;
    }
    EXPECT_GT(lacking, 100);
    EXPECT_LT(lacking, 390);
}

TEST(NumberReadingTest, NoTextLacksDigitsUnlessAGeneratedKeyTellsSo) {
    const std::vector<std::string> texts = shortTexts();
    int shown = 0;
    for (unsigned seed = 1'000; seed < 1'400; ++seed) {
        ValueGenerator generator(seed, true);
        const std::string pattern = "(" + ValueGenerator(seed, false).alternatives(1) + ")(" +
                                    generator.alternatives(1) + ")" + generator.alternatives(0);
        if (someTextLacksDigits(pattern, texts)) {
            ++shown;
            EXPECT_TRUE(canLackDigits(parsePattern(pattern), 2)) << pattern << ", seed " << seed;
        }
    }
    EXPECT_GT(shown, 100);
}

TEST(NumberReadingTest, GeneratedPatternsMatchNothingWhereTheEmptyTextShowsIt) {
    for (unsigned seed = 0; seed < 2'000; ++seed) {
        const std::string pattern = ValueGenerator(seed, false).alternatives(2);
        EXPECT_EQ(canMatchNothing(parsePattern(pattern)), SettingPattern(pattern).search("").has_value()) << pattern;
    }
}

TEST(NumberReadingTest, NoMatchIsEmptyUnlessAGeneratedPatternTellsSo) {
    const std::vector<std::string> texts = shortTexts();
    int shown = 0;
    for (unsigned seed = 0; seed < 400; ++seed) {
        const std::string pattern = "(?=(1?))" + ValueGenerator(seed, true).alternatives(1);
        const SettingPattern key(pattern);
        for (const std::string& text : texts) {
            const auto match = key.search(text);
            if (match && match->front().empty()) {
                ++shown;
                EXPECT_TRUE(canMatchNothing(parsePattern(pattern))) << pattern << ", seed " << seed;
                break;
            }
        }
    }
    EXPECT_GT(shown, 100);
}

} // namespace
} // namespace brisk
