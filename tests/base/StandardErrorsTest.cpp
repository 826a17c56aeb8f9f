#include "base/StandardErrors.h"

#include <gmock/gmock.h>

#include <system_error>

namespace brisk {
namespace {

TEST(StandardErrorsTest, NumbersAreReadUpToTheFirstCharacterThatIsNoDigit) {
    EXPECT_EQ(stringToInt("42"), 42);
    EXPECT_EQ(stringToInt("0"), 0);
    EXPECT_EQ(stringToInt("0042"), 42);
    EXPECT_EQ(stringToInt(" \t\n42"), 42);
    EXPECT_EQ(stringToInt("+42"), 42);
    EXPECT_EQ(stringToInt("-42"), -42);
    EXPECT_EQ(stringToInt("42.9"), 42);
    EXPECT_EQ(stringToInt("42 43"), 42);
    EXPECT_EQ(stringToInt("0x10"), 0);
    EXPECT_EQ(stringToInt(std::string("4\0002", 3)), 4);
}

TEST(StandardErrorsTest, BoundsAreThoseOfASigned32BitInteger) {
    EXPECT_EQ(stringToInt("2147483647"), 2147483647);
    EXPECT_EQ(stringToInt("-2147483648"), -2147483647 - 1);
    for (const char* text : {"2147483648", "-2147483649", "4294967296", "9223372036854775808", "-99999999999999999999",
                             "99999999999999999999"}) {
        try {
            stringToInt(text);
            ADD_FAILURE() << text << " was accepted";
        } catch (const std::out_of_range& error) {
            EXPECT_STREQ(error.what(), "stoi argument out of range") << text;
        }
    }
}

TEST(StandardErrorsTest, TextWithoutANumberIsAnInvalidArgument) {
    for (const char* text : {"", " ", "abc", "-", "+", "- 1", ".5", "x1"}) {
        try {
            stringToInt(text);
            ADD_FAILURE() << text << " was accepted";
        } catch (const std::invalid_argument& error) {
            EXPECT_STREQ(error.what(), "invalid stoi argument") << text;
        }
    }
}

TEST(StandardErrorsTest, RangeErrorOfAnEarlierCallDoesNotSpoilALaterNumber) {
    EXPECT_THROW(stringToInt("99999999999999999999"), std::out_of_range);
    EXPECT_EQ(stringToInt("1"), 1);
}

TEST(StandardErrorsTest, InvalidVectorSubscriptIsAnOutOfRangeError) {
    try {
        throwInvalidVectorSubscript();
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(), "invalid vector subscript");
    }
}

TEST(StandardErrorsTest, FileSystemErrorTellsOperationPathAndWindowsError) {
    constexpr int kAccessDenied = 5;
    try {
        throwFileSystemError("exists", "C:\\Games\\settings.ini", kAccessDenied);
    } catch (const std::filesystem::filesystem_error& error) {
        EXPECT_EQ(error.code(), std::error_code(kAccessDenied, std::system_category()));
        EXPECT_EQ(error.path1(), "C:\\Games\\settings.ini");
        EXPECT_EQ(error.path2(), "");
        EXPECT_THAT(error.what(), ::testing::HasSubstr("exists: " + error.code().message()));
    }
}

} // namespace
} // namespace brisk
