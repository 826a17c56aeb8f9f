#include "pattern/PatternAnalysis.h"

#include "pattern/PatternCost.h"
#include "pattern/PatternSearchHints.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace brisk {
namespace {

using Texts = std::vector<std::string>;

std::string partOf(const std::string& pattern, PatternSpan span) {
    return pattern.substr(span.begin, span.end - span.begin);
}

Texts partsOf(const std::string& pattern, const std::vector<PatternSpan>& spans) {
    Texts parts;
    for (const PatternSpan& span : spans) {
        parts.push_back(std::to_string(span.begin) + ": " + partOf(pattern, span));
    }
    return parts;
}

Texts outside(const std::string& pattern) {
    return partsOf(pattern, textOutsideGroups(parsePattern(pattern)));
}

Texts withinText(const std::string& pattern) {
    return partsOf(pattern, assertionsWithinText(parsePattern(pattern)));
}

Texts greedy(const std::string& pattern) {
    return partsOf(pattern, greedyBefore(parsePattern(pattern), 2));
}

Texts costs(const std::string& pattern) {
    Texts parts;
    for (const PatternCost& cost : costsOf(parsePattern(pattern))) {
        const char* const kinds[] = {"ambiguous", "adjacent", "leading"};
        parts.push_back(std::string(kinds[static_cast<std::size_t>(cost.kind)]) + " of " +
                        std::to_string(cost.bytes.count()) + ": " + partOf(pattern, cost.span));
    }
    return parts;
}

ByteSet bytes(std::string_view text) {
    ByteSet set;
    for (const char byte : text) {
        set.set(static_cast<unsigned char>(byte));
    }
    return set;
}

constexpr std::size_t kUnbounded = PatternNode::kUnbounded;

TEST(PatternAnalysisTest, GroupIsFoundByItsNumber) {
    const PatternTree tree = parsePattern("(a(?:b)(c))|(d)");
    EXPECT_EQ(tree.groupCount, 3U);
    EXPECT_EQ(spanOfGroup(tree, 0), std::nullopt);
    EXPECT_EQ(spanOfGroup(tree, 1), (PatternSpan{0, 11}));
    EXPECT_EQ(spanOfGroup(tree, 2), (PatternSpan{7, 10}));
    EXPECT_EQ(spanOfGroup(tree, 3), (PatternSpan{12, 15}));
    EXPECT_EQ(spanOfGroup(tree, 4), std::nullopt);
}

TEST(PatternAnalysisTest, MatchIsEmptyWhereEveryTermCanBe) {
    for (const std::string pattern : {"", "a*", "(a|)(b?)", "^$", "\\b(?=a)", "a{0}", "()\\1", "a{0,3}?"}) {
        EXPECT_TRUE(canMatchNothing(parsePattern(pattern))) << pattern;
    }
    for (const std::string pattern : {"a", "a*b", "(a|b)", "a+", "[]", "(?:a?b){1,2}"}) {
        EXPECT_FALSE(canMatchNothing(parsePattern(pattern))) << pattern;
    }
}

TEST(PatternAnalysisTest, TextOutsideOfTheGroupsIsTold) {
    EXPECT_EQ(outside("((?:^|\\n)Width=)(\\d+)()"), Texts{});
    EXPECT_EQ(outside("\\b(?=a)(a)^$"), Texts{});
    EXPECT_EQ(outside("(?:.|\\n)*?(\\nWidth=)(\\d+)()"), Texts{"0: (?:.|\\n)*?"});
    EXPECT_EQ(outside("\\nWidth\\s*=(\\d+);"), (Texts{"0: \\nWidth\\s*=", "16: ;"}));
    EXPECT_EQ(outside("(?:x(a)|b)(c)\\1"), (Texts{"3: x", "8: b", "13: \\1"}));
    EXPECT_EQ(outside("Width"), Texts{"0: Width"});
    EXPECT_EQ(outside("a{0}(b)"), Texts{});
}

TEST(PatternAnalysisTest, RepeatedGroupLosesItsEarlierRounds) {
    EXPECT_EQ(outside("(\\w+\\n)*(Width=)(\\d+)"), Texts{"0: (\\w+\\n)*"});
    EXPECT_EQ(outside("((?:\\w+\\n)*Width=)(\\d)?()"), Texts{});
}

TEST(PatternAnalysisTest, AssertionMeantForALineIsTold) {
    EXPECT_EQ(withinText("(^Width=)(\\d+)($)"), Texts{});
    EXPECT_EQ(withinText("((?:^|\\n)Width=)(\\d+)(\\n|$)"), Texts{});
    EXPECT_EQ(withinText("(\\[A\\]\\n^Width=)(\\d+$)(\\n)"), (Texts{"8: ^", "20: $"}));
    EXPECT_EQ(withinText("a*^b*$c*"), Texts{});
    EXPECT_EQ(withinText("a(?=b$)b"), Texts{});
}

TEST(PatternAnalysisTest, WhatTakesTheValueBeforeItsGroupIsTold) {
    EXPECT_EQ(greedy("(Width.*)(\\d+)()"), Texts{"6: .*"});
    EXPECT_EQ(greedy("(Width[^=]*\\s*)(\\d+)()"), Texts{"6: [^=]*"});
    EXPECT_EQ(greedy("((?:.|\\n)*|\\d+)(\\d+)()"), (Texts{"1: (?:.|\\n)*", "11: \\d+"}));
    EXPECT_EQ(greedy("(Width.*?)(\\d+)()"), Texts{});
    EXPECT_EQ(greedy("(<res.*width=\")(\\d+)(\")"), Texts{});
    EXPECT_EQ(greedy("(Width\\s*=\\s*0*)(\\d+)()"), Texts{});
    EXPECT_EQ(greedy("(Width.*)"), Texts{});
}

TEST(PatternAnalysisTest, OrdinaryKeysCostNoMoreThanTheTextIsLong) {
    for (const std::string pattern :
         {"((?:^|\\n)Width=)(\\d+)()", "(\\[Display\\][^\\[]*\\nWidth=)(\\d+)()", "(\\bMode\\s*=\\s*)(\\w+)()",
          "(<res [^>]*width=\")(\\d+)(\")", "(\"width\"\\s*:\\s*)(-?\\d+(?:\\.\\d+)?)()",
          "(^[\\s\\S]*?\\nWidth=)(\\d+)()", "(\\nA=(?:\\w+,)*)(\\d+)()", "(\\nA=(?:(?:\\d{1,3}\\.)*|x))(y)()",
          "(\\n(?:\\w+=[^\\n]*\\n)*X=)(y)()"}) {
        EXPECT_EQ(costs(pattern), Texts{}) << pattern;
    }
}

TEST(PatternAnalysisTest, RepetitionThatCanSplitATextInSeveralWaysIsTold) {
    EXPECT_EQ(costs("x(a+)+"), Texts{"ambiguous of 1: (a+)+"});
    EXPECT_EQ(costs("x(?:a|a)*"), Texts{"ambiguous of 1: (?:a|a)*"});
    EXPECT_EQ(costs("x(?:\\w+\\s*)+="), Texts{"ambiguous of 63: (?:\\w+\\s*)+"});
    EXPECT_EQ(costs("x(?:a|ab|bc|c)*="), Texts{"ambiguous of 3: (?:a|ab|bc|c)*"});
    EXPECT_EQ(costs("x(?:a{2}b|aab)*="), Texts{"ambiguous of 1: (?:a{2}b|aab)*"});
    EXPECT_EQ(costs("x(?:(?:|b?)a)*="), Texts{"ambiguous of 2: (?:(?:|b?)a)*"});
    EXPECT_EQ(costs("x(?:(?:a|a)*b)*="), Texts{"ambiguous of 1: (?:a|a)*"});
    EXPECT_EQ(costs("x(?:a+){9}"), Texts{"adjacent of 1: a+"});
    EXPECT_EQ(costs("x(?:ab|ac)*="), Texts{});
}

TEST(PatternAnalysisTest, LongRepetitionWithChoicesIsDoubted) {
    const std::string loop = "(?:" + std::string(127, 'a') + "b?)*";
    EXPECT_EQ(costs('x' + loop), Texts{});
    EXPECT_EQ(costs("x(?:a" + loop.substr(3)), Texts{"ambiguous of 1: (?:a" + loop.substr(3)});
    EXPECT_EQ(costs("x(?:" + std::string(1'000, 'a') + ")*"), Texts{});
}

TEST(PatternAnalysisTest, RepetitionsThatMeetAreTold) {
    EXPECT_EQ(costs("x\\s*\\s*"), Texts{"adjacent of 6: \\s*\\s*"});
    EXPECT_EQ(costs("(x\\s*)(\\s*-?\\d+)()"), Texts{"adjacent of 6: \\s*)(\\s*"});
    EXPECT_EQ(costs("x.*,?(?:a|\\d+)"), Texts{"adjacent of 10: .*,?(?:a|\\d+"});
    EXPECT_EQ(costs("x\\s*=\\s*"), Texts{});
    EXPECT_EQ(costs("x\\s*\\d*"), Texts{});
    EXPECT_EQ(costs("x(?:\\w+,)*(?:\\w+;)*"), Texts{});
    EXPECT_EQ(costs("x(?:\\w+,)*[\\w,]*"), Texts{"adjacent of 63: (?:\\w+,)*[\\w,]*"});
}

TEST(PatternAnalysisTest, RepetitionInFrontOfThePatternIsTold) {
    EXPECT_EQ(costs("((?:.|\\n)*?\\nWidth=)(\\d+)()"), Texts{"leading of 255: (?:.|\\n)*?"});
    EXPECT_EQ(costs("((?:.*\\n)*Width=)(\\d+)()"), Texts{"leading of 255: (?:.*\\n)*"});
    EXPECT_EQ(costs("\\b[^x]+x"), Texts{"leading of 255: [^x]+"});
    EXPECT_EQ(costs("(?=\\w+=)x"), Texts{"leading of 63: \\w+"});
    EXPECT_EQ(costs("(?:^|\\n)\\s*Width"), Texts{});
    EXPECT_EQ(costs("(\\d+)"), Texts{});
}

TEST(PatternAnalysisTest, PatternOfManyRepetitionsIsLookedThroughInTime) {
    std::string pattern;
    for (int loop = 0; loop < 5'000; ++loop) {
        pattern += "x(?:[ab]c?|[bc]d?|[cd]e?|[de]f?|[ef]g?|[fg]h?)*";
    }
    EXPECT_EQ(costsOf(parsePattern(pattern)).size(), 5'000U);
}

TEST(PatternAnalysisTest, BeginningIsGuardedByALineStartOrABoundary) {
    const auto beginning = [](const std::string& pattern) { return beginningOf(parsePattern(pattern)); };
    EXPECT_EQ(beginning("((?:^|\\n)Width=)(\\d+)()"), (PatternBeginning{bytes("W"), bytes("\n"), false}));
    EXPECT_EQ(beginning("(\\bWidth=)(\\d+)()"), (PatternBeginning{bytes("W"), {}, false}));
    EXPECT_EQ(beginning("(\\BWidth=)(\\d+)()"), (PatternBeginning{{}, bytes("W"), false}));
    EXPECT_EQ(beginning("[\"']?(?=x)Width"), (PatternBeginning{{}, bytes("\"'W"), false}));
    EXPECT_EQ(beginning("(?:a|\\bb|^)*c"), (PatternBeginning{bytes("abc"), bytes("ac"), false}));
    EXPECT_EQ(beginning("a??|b{0}"), (PatternBeginning{{}, bytes("a"), true}));
    EXPECT_EQ(beginning("()\\1a"), (PatternBeginning{{}, ByteSet().set(), false}));
}

TEST(PatternAnalysisTest, LongestTextThatEveryMatchHasIsTold) {
    const auto needed = [](const std::string& pattern) { return neededText(parsePattern(pattern)); };
    EXPECT_EQ(needed("((?:^|\\n)Width=)(\\d+)()"), (NeededText{"Width=", {0, 1}, bytes("\n")}));
    EXPECT_EQ(needed("(\\nWid\\bth)(=(?=1))\\d+"), (NeededText{"\nWidth=", {0, 0}, {}}));
    EXPECT_EQ(needed("(\\[A\\][^\\[]*\\nWidth=)(\\d+)()"), (NeededText{"\nWidth=", {3, kUnbounded}, ByteSet().set()}));
    EXPECT_EQ(needed("(?:Windowed|Width)\\d{2,4}px?"), (NeededText{"p", {7, 12}, bytes("WindowedWidth0123456789")}));
    EXPECT_EQ(needed("x(?:abc)+de"), (NeededText{"xabc", {0, 0}, {}}));
    EXPECT_EQ(needed("([AB])\\1*c+Width"), (NeededText{"Width", {2, kUnbounded}, ByteSet().set()}));
    EXPECT_EQ(needed("(?:abc)?d|e"), (NeededText{"", {0, 0}, {}}));
}

} // namespace
} // namespace brisk
