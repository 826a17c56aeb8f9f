// The keys that docs/title-database.md gives as examples.
#include "TitleManagerFixture.h"

#include "titles/TextConfigAdapter.h"

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

TEST(KeyExamples, LineIsFoundAlsoAtTheStartOfTheText) {
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

TEST(KeyExamples, ValueMayReachToTheEndOfItsLine) {
    EXPECT_EQ(use("(\\nMode=)([^\\n]*)()", "\nMode=Very High\nx\n"), "Very High -> \nMode=9\nx\n");
    EXPECT_EQ(use("(\\nMode=)([^\\n]*)()", "\nMode=\nx\n"), " -> \nMode=9\nx\n");
}

TEST(KeyExamples, SettingOfOneSectionIsFound) {
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

TEST(KeyExamples, DotTakesAsMuchOfALineAsItCan) {
    EXPECT_EQ(use("(<res.*width=\")(\\d+)(\")", "<res width=\"1\"/><x width=\"2\"/>\n<x width=\"3\"/>"),
              "2 -> <res width=\"1\"/><x width=\"9\"/>\n<x width=\"3\"/>");
}

TEST(KeyExamples, TwoNumbersInOneValueAreTwoSettings) {
    const std::string width = "(\\nresolution *= *)(\\d+)(,\\d+)";
    const std::string height = "(\\nresolution *= *\\d+,)(\\d+)()";
    EXPECT_EQ(use(width, "\nresolution = 640,480\n", "1600"), "640 -> \nresolution = 1600,480\n");
    EXPECT_EQ(use(height, "\nresolution = 1600,480\n", "900"), "480 -> \nresolution = 1600,900\n");
}

TEST(KeyExamples, OnlyTheFirstSettingOfANameIsFoundFromTheTextsBeginning) {
    EXPECT_EQ(use("(^[\\s\\S]*?\\nWidth=)(\\d+)()", "[A]\nWidth=1\n[B]\nWidth=2\n"),
              "1 -> [A]\nWidth=9\n[B]\nWidth=2\n");
}

TEST(KeyExamples, AnythingLazyInFrontDoesNotMakeItTheFirstSettingAlone) {
    EXPECT_EQ(use("((?:.|\\n)*?\\nWidth=)(\\d+)()", "[A]\nWidth=1\n[B]\nWidth=2\n"),
              "1 -> [A]\nWidth=9\n[B]\nWidth=9\n");
}

TEST(KeyExamples, AnythingLazyOutsideOfTheGroupsIsLost) {
    EXPECT_EQ(use("(?:.|\\n)*?(\\nWidth=)(\\d+)()", "[A]\nWidth=1\n[B]\n"), "1 -> \nWidth=9\n[B]\n");
}

TEST(KeyExamples, AnythingLazyInFrontIsNoBurdenWhereMuchTextFollows) {
    std::string text = "[A]\nWidth=1\n";
    while (text.size() < 20'000) {
        text += "name of a setting = its value\n";
    }
    for (const char* const key : {"((?:.|\\n)*?\\nWidth=)(\\d+)()", "(^(?:.|\\n)*?\\nWidth=)(\\d+)()"}) {
        EXPECT_THAT(use(key, text), ::testing::StartsWith("1 -> [A]\nWidth=9\n")) << key;
    }
}

TEST(KeyExamples, FurtherGroupBeforeTheValueMakesItTheThird) {
    EXPECT_EQ(use("((a|b)=)(\\d+)()", "a=5"), "a -> a=95");
    EXPECT_EQ(use("((?:a|b)=)(\\d+)()", "a=5"), "5 -> a=9");
}

TEST(KeyExamples, DollarSignAtTheEndOfAValueTakesTheTextBehindIt) {
    EXPECT_EQ(use("(unit=\")(\\w*)(\")", "unit=\"x\"\n", "US$"), "x -> unit=\"US$3\n");
    EXPECT_EQ(use("(unit=\")(\\w*)(\")", "unit=\"x\"\n", "US$$"), "x -> unit=\"US$\"\n");
}

TEST(KeyExamples, EmptyKeyMatchesEverywhere) {
    EXPECT_EQ(use("", "ab", "x"), " -> xaxbx");
}

TEST(KeyExamples, LettersOutsideAsciiAreSeveralBytes) {
    EXPECT_EQ(use("(Gr.\\We=)(\\d+)()", "Gr\u00F6\u00DFe=5"), "none -> Gr\u00F6\u00DFe=5");
    EXPECT_EQ(use("(Gr..\\W\\We=)(\\d+)()", "Gr\u00F6\u00DFe=5"), "5 -> Gr\u00F6\u00DFe=9");
    EXPECT_EQ(use("(Gr\u00F6\u00DFe=)(\\d+)()", "Gr\u00F6\u00DFe=5"), "5 -> Gr\u00F6\u00DFe=9");
}

TEST(KeyExamples, EmptySecondGroupIsAPlaceToCreateASettingAt) {
    EXPECT_EQ(use("(\\nheight *= *\\d+)()()", "\nheight = 1080\nx\n", "\nupscaling = b"),
              " -> \nheight = 1080\nupscaling = b\nx\n");
    EXPECT_EQ(use("(\\[Upscaling\\]\\n)()()", "[Upscaling]\nx=1\n", "Mode=b\n"), " -> [Upscaling]\nMode=b\nx=1\n");
    EXPECT_EQ(use("($)()()", "a=1\nb=2\n", "Mode=b\n"), " -> a=1\nb=2\nMode=b\n");
}

TEST(KeyExamples, SettingIsCreatedAtEveryPlaceThatMatches) {
    EXPECT_EQ(use("(#)()()", "#1 #2", "x"), " -> #x1 #x2");
    EXPECT_EQ(use("(!)()()", "#1 #2", "x"), "none -> #1 #2");
}

TEST(KeyExamples, PlaceMayBeATextThatIsReplaced) {
    EXPECT_EQ(use("(\\n)(; *upscaling *=[^\\n]*)()", "x\n; upscaling = off\ny\n", "upscaling = b"),
              "; upscaling = off -> x\nupscaling = b\ny\n");
}

// Whole fields, used as the service does.
class FieldExamplesTest : public testing::TitleManagerFixture {
protected:
    // The file after the title was optimized, with plain line ends.
    std::string optimize(const std::string& text, const char* fields) {
        loadTextTitle(text, fields);
        EXPECT_TRUE(manager.isTitleNeedToBeOptimized("game.exe"));
        EXPECT_TRUE(manager.optimizeTitle("game.exe"));
        EXPECT_FALSE(manager.isTitleNeedToBeOptimized("game.exe"));
        std::string optimized = testing::readFile(file());
        std::erase(optimized, '\r');
        return optimized;
    }
};

TEST_F(FieldExamplesTest, SettingThatIsOnlyACommentTakesItsPlace) {
    constexpr char kFields[] = R"json([{
        "key": "(\\nupscaling *= *)(\\w+)()",
        "value": "balanced",
        "create_key": "(\\n)(; *upscaling *=[^\\n]*)()",
        "create_value": "upscaling = *"
    }])json";
    EXPECT_EQ(optimize("x = 1\n; upscaling = off\ny = 2\n", kFields), "x = 1\nupscaling = balanced\ny = 2\n");
    EXPECT_EQ(optimize("x = 1\nupscaling = off\n", kFields), "x = 1\nupscaling = balanced\n");
}

TEST_F(FieldExamplesTest, SettingInAnotherFormCountsAsMissingAndIsCreatedASecondTime) {
    EXPECT_EQ(optimize("height = 1080\nx = 1\nupscaling = -1\n", R"json([{
        "key": "(\\nupscaling *= *)(\\d+)()",
        "value": 2,
        "create_key": "(height *= *\\d+)()()",
        "create_value": "\nupscaling = *"
    }])json"),
              "height = 1080\nupscaling = 2\nx = 1\nupscaling = -1\n");
    EXPECT_EQ(optimize("height = 1080\nx = 1\nupscaling = -1\n", R"json([{
        "key": "(\\nupscaling *= *)(-?\\d+)()",
        "value": 2,
        "create_key": "(height *= *\\d+)()()",
        "create_value": "\nupscaling = *"
    }])json"),
              "height = 1080\nx = 1\nupscaling = 2\n");
}

TEST_F(FieldExamplesTest, NumberWithoutDigitsIsAnErrorOnlyWhereNoEarlierKeyDiffers) {
    constexpr char kFields[] =
        R"json([{ "key": "(\\nA=)(\\d+)()", "value": 1 }, { "key": "(\\nB=)(\\w+)()", "value": 2 }])json";
    EXPECT_EQ(optimize("\nA=0\nB=auto\n", kFields), "\nA=1\nB=2\n");
    loadTextTitle("\nA=1\nB=auto\n", kFields);
    EXPECT_THROW(manager.isTitleNeedToBeOptimized("game.exe"), std::invalid_argument);
}

} // namespace
} // namespace brisk
