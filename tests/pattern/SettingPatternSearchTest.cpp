#include "pattern/SettingPattern.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <regex>
#include <string>

// How a search goes straight to the places that matter. That it finds the same there is for the differential test.

namespace brisk {
namespace {

using testing::ElementsAre;
using testing::Optional;

std::string lines(std::size_t count) {
    std::string text;
    for (; count > 0; --count) {
        text += "name of a setting = its value\n";
    }
    return text;
}

std::size_t placesTried(const std::string& pattern, const std::string& text) {
    std::size_t places = 0;
    static_cast<void>(SettingPattern(pattern).search(text, &places));
    return places;
}

TEST(SettingPatternSearchTest, PlacesAreAddedUp) {
    std::size_t places = 5;
    const SettingPattern pattern("a");
    static_cast<void>(pattern.search("xxaxa", &places));
    EXPECT_EQ(places, 6);
    static_cast<void>(pattern.search("xx", &places));
    EXPECT_EQ(places, 6);
}

TEST(SettingPatternSearchTest, TextThatEveryMatchNeedsIsLookedForFirst) {
    const std::string text = lines(1000) + "Width=\n" + lines(1000) + "\nWidth=1280\nWidth=";
    EXPECT_EQ(placesTried("(\\nWidth=)(\\d+)()", text), 2);
    // Of the first one also the place behind the line's end, where only the text's beginning would do.
    EXPECT_EQ(placesTried("((?:^|\\n)Width=)(\\d+)()", text), 3);
    EXPECT_EQ(placesTried("(\\bWidth\\s*=\\s*)(\\d+)()", text), 2);
    EXPECT_EQ(placesTried("([a-z]Width=)(\\d+)()", text), 0);
}

TEST(SettingPatternSearchTest, PlacesBeforeAByteThatNoneHasBeforeItsNeededTextAreSkipped) {
    const std::string text = lines(1000) + "NoWidth\nMaxWidth=a\nMinWidth=5\n" + lines(10);
    EXPECT_EQ(placesTried("([A-Z]\\w+Width=)(\\d+)()", text), 2);
    // Right behind such a byte nothing is long enough.
    EXPECT_EQ(placesTried("(\\w+Width=)(\\d+)()", "a b c d Width=5 e f"), 0);
    EXPECT_EQ(placesTried("([^;\\n]+Width=)(\\d+)()", lines(100) + ";Width=5\n; Width=5"), 1);
    // It is looked for nearby only.
    const std::string distant = std::string(1000, 'a') + "Width=";
    EXPECT_THAT(SettingPattern("([A-Z]?a+Width=)(5)").search("; " + distant + '5'),
                Optional(ElementsAre(distant + '5', distant, "5")));
}

TEST(SettingPatternSearchTest, TextThatEveryMatchNeedsAndThatIsMissingEndsTheSearch) {
    EXPECT_EQ(placesTried("(\\nWidth=)(\\d+)()", lines(1000)), 0);
    EXPECT_EQ(placesTried("((?:.|\\n)*Width=)(\\d+)()", lines(1000)), 0);
    EXPECT_EQ(placesTried("(?:a|b)*c", std::string(40, 'a')), 0);
    // Also where it is only behind.
    EXPECT_EQ(placesTried("(\\w+ Width=)(\\d+)()", " Width=1\n" + lines(1000)), 0);
}

TEST(SettingPatternSearchTest, HopelessKeyIsGivenUpAlsoWhereATextThatItNeedsIsMissing) {
    EXPECT_THROW(placesTried("(a|a)*b", std::string(40, 'a')), std::regex_error);
    EXPECT_THROW(placesTried("((a*)*b)", std::string(40, 'a')), std::regex_error);
}

TEST(SettingPatternSearchTest, PlacesWithAnotherFirstByteAreLeftOut) {
    EXPECT_EQ(placesTried("[A-Z]\\w+", lines(1000) + "A;BC"), 2);
    EXPECT_EQ(placesTried("\\d*x|[;,]", lines(10) + "1,"), 2);
}

TEST(SettingPatternSearchTest, TextsBeginningIsOnePlace) {
    EXPECT_EQ(placesTried("(^Width=)(\\d+)()", lines(10) + "Width=1\n"), 1);
}

TEST(SettingPatternSearchTest, AnythingInFrontIsTriedAtOnePlace) {
    const std::string text = lines(1000) + "Width=wide\n";
    for (const char* const key :
         {"((?:.|\\n)*?Width=)(\\d+)()", "([^]*Width=)(\\d+)()", "((?:\\s|\\S)+?Width=)(\\d+)()"}) {
        EXPECT_EQ(placesTried(key, text), 1) << key;
        EXPECT_EQ(placesTried(key, text + "Width=1\n"), 1) << key;
    }
    // \r is no part of (?:.|\n).
    EXPECT_EQ(placesTried("((?:.|\\n)*?Width=)(\\d+)()", "a\rb\r" + text), 3);
}

TEST(SettingPatternSearchTest, AnythingInFrontIsTriedAgainWhereItsTextIsReferredTo) {
    EXPECT_THAT(SettingPattern("((?:.|\\n)*?)x\\1;").search("abxb;"), Optional(ElementsAre("bxb;", "b")));
}

TEST(SettingPatternSearchTest, LinesInFrontAreTriedOnceAndThenOnlyWhatFollowsThem) {
    const std::string text = lines(1000) + "Width=wide\nMaxWidth=wide\n" + lines(1000);
    EXPECT_EQ(placesTried("((?:.*\\n)*Width=)(\\d+)()", text), 3);
    EXPECT_EQ(placesTried("((?:[^\\n]*\\n)*?Width=)(\\d+)()", text), 3);
    EXPECT_EQ(placesTried("((?:.*\\n)+Width=)(\\d+)()", text), 1);
    EXPECT_EQ(placesTried("((?:.*\\n)+?Width=)(\\d+)()", "a\n\r\n" + text), 2);
    EXPECT_THAT(SettingPattern("((?:.*\\n)+Width=)(\\d+)()").search("Width=x\n\ra\nWidth=7\n"),
                Optional(ElementsAre("a\nWidth=7", "a\nWidth=", "7", "")));
    // Found in the middle of a line, without a whole one.
    const std::string found = lines(3) + "Width=x\nMaxWidth=7\n";
    EXPECT_THAT(SettingPattern("((?:.*\\n)*Width=)(\\d+)()").search(found),
                Optional(ElementsAre("Width=7", "Width=", "7", "")));
    // Lines begin anew behind a byte that belongs to none.
    EXPECT_THAT(SettingPattern("((?:.*\\n)*Width=)(\\d+)()").search("Width=x\n\ra\nWidth=7\n"),
                Optional(ElementsAre("a\nWidth=7", "a\nWidth=", "7", "")));
}

TEST(SettingPatternSearchTest, AnythingInFrontOfALargeTextIsNoBurden) {
    const std::string setting = "\nWidth=1280\n";
    const std::string text = lines(40'000);
    for (const std::string key : {"((?:.|\\n)*?\\nWidth=)(\\d+)()", "((?:.*\\n)*Width=)(\\d+)()"}) {
        const SettingPattern pattern(key);
        EXPECT_EQ(pattern.replace(setting + text, "$1$997$3"), "\nWidth=7\n" + text) << key;
        EXPECT_EQ(pattern.replace(text + setting, "$1$997$3"), text + "\nWidth=7\n") << key;
        EXPECT_EQ(pattern.replace(text, "$1$997$3"), text) << key;
        EXPECT_EQ(pattern.replace("\nWidth=x\n" + text + "\nWidth=\n", "$1$997$3"), "\nWidth=x\n" + text + "\nWidth=\n")
            << key;
    }
}

} // namespace
} // namespace brisk
