#include "pattern/PatternTree.h"

#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

namespace brisk {
namespace {

using Kind = PatternNode::Kind;

std::string nameOf(const PatternTree& tree, const PatternNode& node) {
    switch (node.kind) {
    case Kind::Text:
        return "text " + std::string(tree.textOf(node));
    case Kind::Set:
        return "set of " + std::to_string(tree.setOf(node).count());
    case Kind::TextBegin:
        return "text begin";
    case Kind::TextEnd:
        return "text end";
    case Kind::WordBoundary:
        return "word boundary";
    case Kind::NoWordBoundary:
        return "no word boundary";
    case Kind::BackReference:
        return "back reference " + std::to_string(node.number);
    case Kind::Repetition: {
        const std::string maximum = node.maximum == PatternNode::kUnbounded ? "" : std::to_string(node.maximum);
        return "repetition " + std::to_string(node.minimum) + ".." + maximum + (node.isLazy ? " lazy" : "");
    }
    case Kind::Group:
        return "group" + (node.number == 0 ? "" : ' ' + std::to_string(node.number));
    case Kind::Lookahead:
        return "lookahead";
    case Kind::NegativeLookahead:
        return "negative lookahead";
    case Kind::Sequence:
        return "sequence";
    }
    return "?";
}

// One line a node, indented below its parent, with the part of the pattern that it stands for.
std::string drawing(const std::string& pattern) {
    const PatternTree tree = parsePattern(pattern);
    std::string lines;
    std::vector<std::size_t> ends;
    for (std::size_t index = 0; index < tree.nodes.size(); ++index) {
        while (!ends.empty() && ends.back() == index) {
            ends.pop_back();
        }
        const PatternNode& node = tree.nodes[index];
        lines += std::string(ends.size() * 2, ' ') + nameOf(tree, node) + " <" +
                 pattern.substr(node.span.begin, node.span.end - node.span.begin) + ">\n";
        ends.push_back(index + node.size);
    }
    return lines;
}

struct Fault {
    std::regex_constants::error_type code{};
    std::size_t offset = 0;
    std::string text;

    bool operator==(const Fault&) const = default;
};

void PrintTo(const Fault& fault, std::ostream* stream) {
    *stream << "code " << static_cast<int>(fault.code) << " at " << fault.offset << ": " << fault.text;
}

Fault faultOf(const std::string& pattern) {
    try {
        parsePattern(pattern);
    } catch (const PatternError& error) {
        return {error.code(), error.offset(), error.what()};
    }
    return {};
}

// The text is the one that std::regex_error has for the code.
void expectFault(const std::string& pattern, std::regex_constants::error_type code, std::size_t offset) {
    EXPECT_EQ(faultOf(pattern), (Fault{code, offset, std::regex_error(code).what()})) << pattern;
}

TEST(PatternTreeTest, KeyIsASequenceOfThreeGroups) {
    EXPECT_EQ(drawing("((?:^|\\n)Width=)(-?\\d+)()"), "group <((?:^|\\n)Width=)(-?\\d+)()>\n"
                                                      "  sequence <((?:^|\\n)Width=)(-?\\d+)()>\n"
                                                      "    group 1 <((?:^|\\n)Width=)>\n"
                                                      "      sequence <(?:^|\\n)Width=>\n"
                                                      "        group <(?:^|\\n)>\n"
                                                      "          sequence <^>\n"
                                                      "            text begin <^>\n"
                                                      "          sequence <\\n>\n"
                                                      "            text \n <\\n>\n"
                                                      "        text Width= <Width=>\n"
                                                      "    group 2 <(-?\\d+)>\n"
                                                      "      sequence <-?\\d+>\n"
                                                      "        repetition 0..1 <-?>\n"
                                                      "          text - <->\n"
                                                      "        repetition 1.. <\\d+>\n"
                                                      "          set of 10 <\\d>\n"
                                                      "    group 3 <()>\n"
                                                      "      sequence <>\n");
}

TEST(PatternTreeTest, EveryKindOfTermHasItsNode) {
    EXPECT_EQ(drawing("^$\\b\\B(?=a)(?!b|)(c)\\1."), "group <^$\\b\\B(?=a)(?!b|)(c)\\1.>\n"
                                                     "  sequence <^$\\b\\B(?=a)(?!b|)(c)\\1.>\n"
                                                     "    text begin <^>\n"
                                                     "    text end <$>\n"
                                                     "    word boundary <\\b>\n"
                                                     "    no word boundary <\\B>\n"
                                                     "    lookahead <(?=a)>\n"
                                                     "      sequence <a>\n"
                                                     "        text a <a>\n"
                                                     "    negative lookahead <(?!b|)>\n"
                                                     "      sequence <b>\n"
                                                     "        text b <b>\n"
                                                     "      sequence <>\n"
                                                     "    group 1 <(c)>\n"
                                                     "      sequence <c>\n"
                                                     "        text c <c>\n"
                                                     "    back reference 1 <\\1>\n"
                                                     "    set of 254 <.>\n");
}

TEST(PatternTreeTest, QuantifierIsForTheLastByteOfAText) {
    EXPECT_EQ(drawing("ab\\x63{2,}?de"), "group <ab\\x63{2,}?de>\n"
                                         "  sequence <ab\\x63{2,}?de>\n"
                                         "    text ab <ab>\n"
                                         "    repetition 2.. lazy <\\x63{2,}?>\n"
                                         "      text c <\\x63>\n"
                                         "    text de <de>\n");
    EXPECT_EQ(drawing("a?"), "group <a?>\n"
                             "  sequence <a?>\n"
                             "    repetition 0..1 <a?>\n"
                             "      text a <a>\n");
}

TEST(PatternTreeTest, QuantifiersNest) {
    EXPECT_EQ(drawing("((?:a|[bc]+){3})*"), "group <((?:a|[bc]+){3})*>\n"
                                            "  sequence <((?:a|[bc]+){3})*>\n"
                                            "    repetition 0.. <((?:a|[bc]+){3})*>\n"
                                            "      group 1 <((?:a|[bc]+){3})>\n"
                                            "        sequence <(?:a|[bc]+){3}>\n"
                                            "          repetition 3..3 <(?:a|[bc]+){3}>\n"
                                            "            group <(?:a|[bc]+)>\n"
                                            "              sequence <a>\n"
                                            "                text a <a>\n"
                                            "              sequence <[bc]+>\n"
                                            "                repetition 1.. <[bc]+>\n"
                                            "                  set of 2 <[bc]>\n");
}

TEST(PatternTreeTest, EmptyPatternIsOneEmptySequence) {
    EXPECT_EQ(drawing(""), "group <>\n"
                           "  sequence <>\n");
    EXPECT_EQ(drawing("|"), "group <|>\n"
                            "  sequence <>\n"
                            "  sequence <>\n");
}

TEST(PatternTreeTest, FaultIsWhereTheFirstByteDoesNotFit) {
    namespace codes = std::regex_constants;
    expectFault("ab)c", codes::error_paren, 2);
    expectFault("a(?<b)", codes::error_paren, 3);
    expectFault("a|*", codes::error_badrepeat, 2);
    expectFault("a+{2}", codes::error_badrepeat, 2);
    expectFault("\\b?", codes::error_badrepeat, 2);
    expectFault("a{x}", codes::error_badbrace, 2);
    expectFault("a{3,2}", codes::error_badbrace, 4);
    expectFault("a{2;3}", codes::error_brace, 3);
    expectFault("a\\x4g", codes::error_escape, 4);
    expectFault("a\\u0141", codes::error_escape, 3);
    expectFault("a\\c1", codes::error_escape, 3);
    expectFault("a\\01", codes::error_escape, 3);
    expectFault("(a)(b\\2)", codes::error_backref, 5);
}

TEST(PatternTreeTest, FaultAtTheEndIsBehindTheLastByte) {
    namespace codes = std::regex_constants;
    expectFault("ab\\", codes::error_escape, 3);
    expectFault("a\\x4", codes::error_escape, 4);
    expectFault("a(?", codes::error_paren, 3);
    expectFault("a{2", codes::error_brace, 3);
    expectFault("a{2,", codes::error_badbrace, 4);
}

TEST(PatternTreeTest, WhatIsNeverClosedIsAFaultWhereItOpens) {
    namespace codes = std::regex_constants;
    expectFault("a(b(c)", codes::error_paren, 1);
    expectFault("(Width=)([^\\n)()", codes::error_brack, 9);
}

TEST(PatternTreeTest, FaultInABracketExpressionIsWhereItsMemberBegins) {
    namespace codes = std::regex_constants;
    expectFault("a[bz-a]", codes::error_range, 3);
    expectFault("a[b\\d-f]", codes::error_range, 3);
    expectFault("a[b[:digits:]]", codes::error_ctype, 3);
    expectFault("a[b[.none.]]", codes::error_collate, 3);
    expectFault("a[b\\B]", codes::error_escape, 3);
    expectFault("a[b\\x4g]", codes::error_escape, 6);
    expectFault("a[b-", codes::error_brack, 1);
}

TEST(PatternTreeTest, GroupsThatAreTooManyAreAFaultWhereTheNextOneOpens) {
    std::string nested;
    std::string many;
    for (int group = 0; group < 201; ++group) {
        nested += "(?:";
    }
    for (int group = 0; group < 9'001; ++group) {
        many += "()";
    }
    expectFault(nested, std::regex_constants::error_complexity, 600);
    expectFault(many, std::regex_constants::error_complexity, 18'000);
}

} // namespace
} // namespace brisk
