#include "base/TextEncoding.h"

#include "support/Sandbox.h"

#include <gmock/gmock.h>

namespace brisk {
namespace {

TEST(TextEncodingTest, ProcessCodePageIsUtf8) {
    EXPECT_EQ(GetACP(), static_cast<UINT>(CP_UTF8));
}

TEST(TextEncodingTest, NarrowTextAndPathsRoundTrip) {
    const std::vector<std::pair<std::string, std::wstring>> texts{
        {"", L""},
        {"C:\\Users\\me", L"C:\\Users\\me"},
        {"C:/Users/me", L"C:/Users/me"},
        {"C:\\Users\\J\xC3\xBCrgen", L"C:\\Users\\J\u00FCrgen"},
        {"\xE6\x98\x9F \xC5\x82", L"\u661F \u0142"},
        {"\xF0\x9F\x8E\xAE.ini", L"\xD83C\xDFAE.ini"},
        {std::string("a\0b", 3), std::wstring(L"a\0b", 3)},
    };
    for (const auto& [narrow, wide] : texts) {
        EXPECT_EQ(toPath(narrow).native(), wide);
        EXPECT_EQ(toNarrow(std::filesystem::path(wide)), narrow);
    }
}

TEST(TextEncodingTest, LongPathsAreConvertedWhole) {
    const std::string narrow = "C:\\" + std::string(40000, 'x') + "\xC3\xBC";
    EXPECT_EQ(toPath(narrow).native().size(), 40004u);
    EXPECT_EQ(toNarrow(toPath(narrow)), narrow);
}

TEST(TextEncodingTest, WhatIsNoCharacterBecomesTheReplacementCharacter) {
    EXPECT_EQ(toPath("J\xFCrgen").native(), L"J\uFFFDrgen");
    EXPECT_EQ(toNarrow(std::filesystem::path(std::wstring(L"a\xD83C!"))), "a\xEF\xBF\xBD!");
}

TEST(TextEncodingTest, FileNamedInNarrowTextIsTheOneTheSystemKnows) {
    const testing::TemporaryFolder folder;
    testing::writeFile(toPath(folder.narrow() + "\\Gl\xC3\xBC"
                                                "ck \xE6\x98\x9F.txt"),
                       "found");
    EXPECT_EQ(testing::readFile(folder / L"Gl\u00FCck \u661F.txt"), "found");
    EXPECT_NE(GetFileAttributesA((folder.narrow() + "\\Gl\xC3\xBC"
                                                    "ck \xE6\x98\x9F.txt")
                                     .c_str()),
              INVALID_FILE_ATTRIBUTES);
}

} // namespace
} // namespace brisk
