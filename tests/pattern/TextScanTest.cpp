#include "pattern/TextScan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace brisk {
namespace {

// Longer than some blocks, with what is looked for at every place.
constexpr std::size_t kLength = 50;

TEST(TextScanTest, TextIsFoundAtEveryPlace) {
    for (const std::string needle : {"=", "ab", "Width=", "a text that is longer than one block"}) {
        for (std::size_t place = 0; place + needle.size() <= kLength; ++place) {
            std::string text(kLength, needle.front());
            text.replace(place, needle.size(), needle);
            const std::size_t expected = needle.size() == 1 ? 0 : place;
            EXPECT_EQ(findText(text, needle, 0), expected) << needle;
            EXPECT_EQ(findText(text, needle, place), place) << needle;
            EXPECT_EQ(findText(text, needle, kLength), std::string::npos) << needle;
        }
    }
}

TEST(TextScanTest, TextWithTheSameEndsIsNotTakenForIt) {
    EXPECT_EQ(findText("Wodth=Wadth=Wedth=Wudth=Width=", "Width=", 0), 24);
    EXPECT_EQ(findText("Wodth=Wadth=Wedth=Wudth=Wydth=", "Width=", 0), std::string::npos);
    EXPECT_EQ(findText("", "a", 0), std::string::npos);
}

TEST(TextScanTest, LastTextIsFoundAtEveryPlace) {
    for (const std::string needle : {"=", "ab", "Width=", "a text that is longer than one block"}) {
        for (std::size_t place = 0; place + needle.size() <= kLength; ++place) {
            std::string text(kLength, needle.back());
            text.replace(place, needle.size(), needle);
            const std::size_t expected = needle.size() == 1 ? kLength - 1 : place;
            EXPECT_EQ(findLastText(text, needle, 0, std::string::npos), expected) << needle;
            EXPECT_EQ(findLastText(text, needle, 0, place), place) << needle;
            EXPECT_EQ(findLastText(text, needle, place, place), place) << needle;
            EXPECT_EQ(findLastText(text, needle, place + 1, place), std::string::npos) << needle;
            if (needle.size() > 1) {
                EXPECT_EQ(findLastText(text, needle, place + 1, kLength), std::string::npos) << needle;
                EXPECT_EQ(place == 0 ? std::string::npos : findLastText(text, needle, 0, place - 1), std::string::npos)
                    << needle;
            }
        }
    }
}

TEST(TextScanTest, LastTextWithTheSameEndsIsNotTakenForIt) {
    EXPECT_EQ(findLastText("Width=Wodth=Wadth=Wedth=Wudth=", "Width=", 0, 30), 0);
    EXPECT_EQ(findLastText("Wydth=Wodth=Wadth=Wedth=Wudth=", "Width=", 0, 30), std::string::npos);
    EXPECT_EQ(findLastText("", "a", 0, 0), std::string::npos);
}

TEST(TextScanTest, BytesOfASetAreFoundAtEveryPlaceBeforeTheEnd) {
    for (const std::string wanted : {"", "\n", "\n\xFF", "\n\xFF\r", "\n\xFF\rz", "0123456789"}) {
        ByteSet bytes;
        for (const char byte : wanted) {
            bytes.set(static_cast<unsigned char>(byte));
        }
        const ByteFinder finder(bytes);
        EXPECT_EQ(finder.find(std::string(kLength, 'a'), 0, kLength), kLength) << wanted;
        for (const char byte : wanted) {
            for (std::size_t place = 0; place < kLength; ++place) {
                std::string text(kLength, 'a');
                text[place] = byte;
                EXPECT_EQ(finder.find(text, 0, kLength), place);
                EXPECT_EQ(finder.find(text, 0, place), place);
                EXPECT_EQ(finder.find(text, place + 1, kLength), kLength);
            }
        }
    }
}

} // namespace
} // namespace brisk
