#include "pattern/SettingPattern.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <regex>
#include <string>

// This program runs with the linker's default stack of 2 MB, an eighth of the service's.

namespace brisk {
namespace {

using testing::ElementsAre;
using testing::Optional;
using testing::SizeIs;

std::string repeated(const std::string& piece, std::size_t times) {
    std::string text;
    for (; times > 0; --times) {
        text += piece;
    }
    return text;
}

void expectGivenUp(const std::string& pattern, const std::string& text, std::regex_constants::error_type code) {
    const SettingPattern setting(pattern);
    try {
        const bool isFound = setting.search(text).has_value();
        ADD_FAILURE() << pattern << (isFound ? " matched" : " did not match");
    } catch (const std::regex_error& error) {
        EXPECT_EQ(error.code(), code) << pattern;
    }
}

TEST(SettingPatternLimitsTest, GreedyPrefixOverALargeTextIsNoBurden) {
    const std::size_t size = 50'000'000;
    const SettingPattern setting(R"(([\s\S]*Width=)(\d+)())");
    EXPECT_EQ(setting.search(std::string(size, 'x')), std::nullopt);

    const std::string text = "Width=1\n" + std::string(size, 'x') + "Width=1280\n";
    EXPECT_THAT(setting.search(text),
                Optional(ElementsAre(SizeIs(text.size() - 1), SizeIs(text.size() - 5), "1280", "")));
    const std::string replaced = setting.replace(text, "$1$991920$3");
    EXPECT_EQ(replaced, text.substr(0, text.size() - 5) + "1920\n");
}

TEST(SettingPatternLimitsTest, MillionsOfLinesInFrontAreNoBurden) {
    const std::string lines(20'000'000, '\n');
    const std::string value = "Width=1280";
    const std::string text = lines + value + lines + value + "\nWidth=x" + lines;
    for (const char* const key : {R"(((?:.*\n)*Width=)(\d+)())", R"(((?:.*\n)+Width=)(\d+)())"}) {
        EXPECT_THAT(SettingPattern(key).search(text),
                    Optional(ElementsAre(SizeIs(2 * (lines.size() + value.size())), SizeIs(testing::_), "1280", "")))
            << key;
        EXPECT_EQ(SettingPattern(key).search(lines + "Width=x" + lines), std::nullopt) << key;
    }
}

TEST(SettingPatternLimitsTest, LookaheadsBehindManyLinesAreNoBurden) {
    const std::string lines = repeated("Volume=0.5\n", 100'000);
    const SettingPattern setting(R"(((?:.*\n)*(?!;)Width=)(\d+)())");
    EXPECT_THAT(setting.search(lines + "Width=1280\n" + lines), Optional(SizeIs(4)));
    EXPECT_EQ(setting.search(lines + "Width=x\n" + lines), std::nullopt);
}

TEST(SettingPatternLimitsTest, GroupRepeatedOverALargeTextIsNoBurden) {
    const std::string text = repeated("Volume=0.5\nName=Player\n", 40'000) + "Width=1280\n";
    EXPECT_THAT(SettingPattern(R"(((?:.|\n)*Width=)(\d+)(\r?\n|$))").search(text),
                Optional(ElementsAre(SizeIs(text.size()), SizeIs(text.size() - 5), "1280", "\n")));
    EXPECT_THAT(SettingPattern(R"(((?:\w+=[^\n]*\n)*Width=)(\d+))").search(text),
                Optional(ElementsAre(SizeIs(text.size() - 1), SizeIs(text.size() - 5), "1280")));
}

TEST(SettingPatternLimitsTest, EveryLineOfALargeTextCanBeReplaced) {
    const std::size_t lines = 100'000;
    EXPECT_EQ(SettingPattern(R"((Width=)(\d+)())").replace(repeated("Width=1280\n", lines), "$1$997$3"),
              repeated("Width=7\n", lines));
}

TEST(SettingPatternLimitsTest, HopelessSearchIsGivenUp) {
    expectGivenUp("(a+)+$", std::string(40, 'a') + 'b', std::regex_constants::error_complexity);
    expectGivenUp("(a|a)*b", std::string(40, 'a'), std::regex_constants::error_complexity);
}

// Bytes that are compared or looked through count, also where they lead nowhere.
TEST(SettingPatternLimitsTest, LongComparisonsAreGivenUp) {
    const std::string letters(1'000'000, 'a');
    expectGivenUp(R"((\w+)=\d[^]*?\1;)", letters + "b=1" + letters + letters + letters,
                  std::regex_constants::error_complexity);
    const std::string word(100'000, 'a');
    expectGivenUp("[ab]+?" + word + 'b' + word, letters, std::regex_constants::error_complexity);
    expectGivenUp("[a-z]{20000}?\\d", letters, std::regex_constants::error_complexity);
    expectGivenUp("a\\w*?\\w\\d", letters, std::regex_constants::error_complexity);
}

TEST(SettingPatternLimitsTest, HopelessReplacementIsGivenUp) {
    const SettingPattern setting("(a+)+$");
    EXPECT_THROW(static_cast<void>(setting.replace(std::string(40, 'a') + 'b', "")), std::regex_error);
}

TEST(SettingPatternLimitsTest, HopelessSearchIsGivenUpAsSoonOnALargeText) {
    expectGivenUp("(a+)+$", std::string(773'000, 'a') + 'b', std::regex_constants::error_complexity);
}

TEST(SettingPatternLimitsTest, BytesThatAreLookedThroughAgainAndAgainCount) {
    expectGivenUp(R"(a[^]*[^]*[^]*;b\d)", std::string(773'000, 'a') + ";bx", std::regex_constants::error_complexity);
}

TEST(SettingPatternLimitsTest, SearchThatNeedsTooMuchMemoryIsGivenUp) {
    expectGivenUp("(?:(a)|(a))*b", std::string(50'000'000, 'a'), std::regex_constants::error_stack);
}

TEST(SettingPatternLimitsTest, DeeplyNestedGroupsAreRejected) {
    for (const std::string opening : {"(", "(?:", "(?=", "(?!"}) {
        try {
            const SettingPattern setting(repeated(opening, 100'000) + repeated(")", 100'000));
            ADD_FAILURE() << opening << " was accepted";
        } catch (const std::regex_error& error) {
            EXPECT_EQ(error.code(), std::regex_constants::error_complexity) << opening;
        }
    }
    EXPECT_THROW(SettingPattern(repeated("(", 100'000)), std::regex_error);
}

TEST(SettingPatternLimitsTest, TwoHundredNestedGroupsAreAcceptedAndNoMore) {
    const SettingPattern setting(repeated("(", 200) + 'a' + repeated(")", 200));
    EXPECT_THAT(setting.search("ba"), Optional(testing::AllOf(SizeIs(201), testing::Each("a"))));
    EXPECT_THROW(SettingPattern(repeated("(", 201) + 'a' + repeated(")", 201)), std::regex_error);
}

TEST(SettingPatternLimitsTest, LongPatternsWork) {
    EXPECT_THAT(SettingPattern(std::string(1'000'000, 'a')).search(std::string(1'000'001, 'a')),
                Optional(ElementsAre(SizeIs(1'000'000))));
    EXPECT_THAT(SettingPattern(repeated("a?", 20'000)).search("aab"), Optional(ElementsAre("aa")));
    EXPECT_THAT(SettingPattern(repeated("(?:a|)", 20'000)).search("aab"), Optional(ElementsAre("aa")));
    EXPECT_THAT(SettingPattern(repeated("(?:ab)*", 20'000)).search("abc"), Optional(ElementsAre("ab")));
    EXPECT_THAT(SettingPattern(repeated("x|", 20'000) + 'a').search("a"), Optional(ElementsAre("a")));
}

TEST(SettingPatternLimitsTest, TooManyGroupsAreRejected) {
    EXPECT_THAT(SettingPattern(repeated("(a)?", 9'000)).search("aa"), Optional(SizeIs(9'001)));
    EXPECT_THROW(SettingPattern(repeated("(a)?", 9'001)), std::regex_error);
}

TEST(SettingPatternLimitsTest, HugeCountsAreAccepted) {
    EXPECT_EQ(SettingPattern("(?:a{50000}){50000}").search(std::string(1000, 'a')), std::nullopt);
    EXPECT_THAT(SettingPattern("a{0,99999999999999999999}").search("aaa"), Optional(ElementsAre("aaa")));
}

} // namespace
} // namespace brisk
