// The keys that docs/title-database.md gives as examples.
#include "titles/TextConfigAdapter.h"

#include <gmock/gmock.h>

namespace brisk {
namespace {

// What the key reads in the text and what the text becomes, as "value -> text".
std::string use(const std::string& key, const std::string& text, const std::string& value = "9") {
    TextConfigAdapter title;
    title.content = text;
    const std::string current = title.getValue(key, "none");
    title.setValue(key, value);
    return current + " -> " + title.content;
}

TEST(KeyExamples, ALineIsFoundAlsoAtTheStartOfTheText) {
    const std::string key = "((?:^|\\n)Width=)(\\d+)()";
    EXPECT_EQ(use(key, "Width=1280\nMaxWidth=1\n"), "1280 -> Width=9\nMaxWidth=1\n");
    EXPECT_EQ(use(key, "a\nWidth=1280"), "1280 -> a\nWidth=9");
}

TEST(KeyExamples, WithoutALineStartOtherNamesAreFoundToo) {
    EXPECT_EQ(use("(Width=)(\\d+)()", "MaxWidth=1\nWidth=2\n"), "1 -> MaxWidth=9\nWidth=9\n");
}

TEST(KeyExamples, BlanksAndCommentsAroundAValueAreKept) {
    EXPECT_EQ(use("(\\nfps_limit *= *)(\\d+)()", "\nfps_limit = 60 ; comment\n"), "60 -> \nfps_limit = 9 ; comment\n");
}

TEST(KeyExamples, AValueMayReachToTheEndOfItsLine) {
    EXPECT_EQ(use("(\\nMode=)([^\\n]*)()", "\nMode=Very High\nx\n"), "Very High -> \nMode=9\nx\n");
    EXPECT_EQ(use("(\\nMode=)([^\\n]*)()", "\nMode=\nx\n"), " -> \nMode=9\nx\n");
}

TEST(KeyExamples, ASettingOfOneSectionIsFound) {
    EXPECT_EQ(use("(\\[Display\\][^\\[]*\\nWidth=)(\\d+)()",
                  "[A]\nWidth=1\n[Display]\nHeight=7\nWidth=2\nDepth=8\n[B]\nWidth=3\n"),
              "2 -> [A]\nWidth=1\n[Display]\nHeight=7\nWidth=9\nDepth=8\n[B]\nWidth=3\n");
}

TEST(KeyExamples, QuotedAttributedAndJsonValuesAreFound) {
    EXPECT_EQ(use("(seta r_mode \")(-?\\d+)(\")", "seta r_mode \"12\"\n", "-1"), "12 -> seta r_mode \"-1\"\n");
    EXPECT_EQ(use("(<resolution [^>]*width=\")(\\d+)(\")", "<resolution depth=\"1\" width=\"2\"/><x width=\"3\"/>"),
              "2 -> <resolution depth=\"1\" width=\"9\"/><x width=\"3\"/>");
    EXPECT_EQ(use("(\"width\"\\s*:\\s*)(\\d+)()", "{ \"width\": 1280, \"height\": 720 }"),
              "1280 -> { \"width\": 9, \"height\": 720 }");
}

TEST(KeyExamples, ADotTakesAsMuchOfALineAsItCan) {
    EXPECT_EQ(use("(<res.*width=\")(\\d+)(\")", "<res width=\"1\"/><x width=\"2\"/>\n<x width=\"3\"/>"),
              "2 -> <res width=\"1\"/><x width=\"9\"/>\n<x width=\"3\"/>");
}

TEST(KeyExamples, AFurtherGroupBeforeTheValueMakesItTheThird) {
    EXPECT_EQ(use("((a|b)=)(\\d+)()", "a=5"), "a -> a=95");
    EXPECT_EQ(use("((?:a|b)=)(\\d+)()", "a=5"), "5 -> a=9");
}

TEST(KeyExamples, ADollarSignAtTheEndOfAValueTakesTheTextBehindIt) {
    EXPECT_EQ(use("(unit=\")(\\w*)(\")", "unit=\"x\"\n", "US$"), "x -> unit=\"US$3\n");
    EXPECT_EQ(use("(unit=\")(\\w*)(\")", "unit=\"x\"\n", "US$$"), "x -> unit=\"US$\"\n");
}

TEST(KeyExamples, AnEmptyKeyMatchesEverywhere) {
    EXPECT_EQ(use("", "ab", "x"), " -> xaxbx");
}

TEST(KeyExamples, LettersOutsideAsciiAreSeveralBytes) {
    EXPECT_EQ(use("(Gr.\\We=)(\\d+)()", "Gr\u00F6\u00DFe=5"), "none -> Gr\u00F6\u00DFe=5");
    EXPECT_EQ(use("(Gr..\\W\\We=)(\\d+)()", "Gr\u00F6\u00DFe=5"), "5 -> Gr\u00F6\u00DFe=9");
    EXPECT_EQ(use("(Gr\u00F6\u00DFe=)(\\d+)()", "Gr\u00F6\u00DFe=5"), "5 -> Gr\u00F6\u00DFe=9");
}

TEST(KeyExamples, AnEmptySecondGroupIsAPlaceToCreateASettingAt) {
    EXPECT_EQ(use("(\\nheight *= *\\d+)()()", "\nheight = 1080\nx\n", "\nupscaling = b"),
              " -> \nheight = 1080\nupscaling = b\nx\n");
    EXPECT_EQ(use("(\\[Upscaling\\]\\n)()()", "[Upscaling]\nx=1\n", "Mode=b\n"), " -> [Upscaling]\nMode=b\nx=1\n");
    EXPECT_EQ(use("($)()()", "a=1\nb=2\n", "Mode=b\n"), " -> a=1\nb=2\nMode=b\n");
}

TEST(KeyExamples, ASettingIsCreatedAtEveryPlaceThatMatches) {
    EXPECT_EQ(use("(#)()()", "#1 #2", "x"), " -> #x1 #x2");
    EXPECT_EQ(use("(!)()()", "#1 #2", "x"), "none -> #1 #2");
}

} // namespace
} // namespace brisk
