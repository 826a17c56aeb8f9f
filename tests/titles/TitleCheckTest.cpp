// The check whether a title's settings are to be changed.
#include "TitleManagerFixture.h"

#include <regex>
#include <stdexcept>

namespace brisk {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StrEq;
using ::testing::ThrowsMessage;

class TitleCheckTest : public testing::TitleManagerFixture {
protected:
    bool check() { return manager.isTitleNeedToBeOptimized("game.exe"); }

    // The log's lines, with what waits for the next line at the front of "next".
    std::vector<std::string> takeLog() {
        logLine("next");
        return log.take();
    }
};

TEST_F(TitleCheckTest, ConfigurationThatCannotBeLoadedIsLogged) {
    loadTitle(textTitle(R"json([{"key": "(w=)(\\d+)()", "value": 5}])json"));
    EXPECT_FALSE(check());
    EXPECT_THAT(takeLog(), ElementsAre("Brisk : unable to load configuration.", "next"));
    // Also where there would be nothing to check in it.
    loadTitle(textTitle("[]"));
    EXPECT_FALSE(check());
    EXPECT_THAT(takeLog(), ElementsAre("Brisk : unable to load configuration.", "next"));
}

TEST_F(TitleCheckTest, RegistryTitleThatWasNotFoundCannotBeLoaded) {
    nlohmann::json title = textTitle(R"json([{"key": "Width", "value": 5}])json");
    title["config_type"] = "reg";
    title["config_locations"] = nlohmann::json::array({"HKEY_CURRENT_USER/Software/Studio/Game"});
    loadTitle(title);
    EXPECT_FALSE(check());
    EXPECT_FALSE(manager.isTitleSupported("", "game.exe", ""));
    EXPECT_FALSE(check());
    EXPECT_THAT(takeLog(),
                ElementsAre("Brisk : unable to load configuration.", "Brisk : publisher: '', binary name: 'game.exe'.",
                            "Brisk : checking registry path 'Software\\Studio\\Game'.",
                            "Brisk : RegOpenKeyEx failed. Error 2.", "Brisk : unable to load configuration.", "next"));
}

TEST_F(TitleCheckTest, TitleWithoutFieldsIsOptimal) {
    loadTextTitle("w=1", "[]", R"json([{"key": "(x=)(\\d+)()", "presence": [1]}])json");
    EXPECT_FALSE(check());
    EXPECT_THAT(takeLog(), ElementsAre("next"));
}

TEST_F(TitleCheckTest, OptimalTitleIsOptimalWhateverItsConditionsSay) {
    loadTextTitle("w=5\nm=fast\n",
                  R"json([{"key": "(w=)(\\d+)()", "value": 5}, {"key": "(m=)(\\w+)()", "value": "fast"}])json",
                  R"json([{"key": "(x=)(\\d+)()", "presence": [1]
}, {"key": "(m=)(\\w+)()", "presence": ["slow"]}])json");
    EXPECT_FALSE(check());
    EXPECT_THAT(takeLog(), ElementsAre("next"));
}

TEST_F(TitleCheckTest, DifferentTextIsLoggedWithoutItsKey) {
    loadTextTitle("m=slow\n", R"json([{"key": "(m=)(\\w+)()", "value": "fast"}])json");
    EXPECT_TRUE(check());
    EXPECT_THAT(takeLog(), ElementsAre("Brisk : game setting 'slow' is not optimal 'fast'.", "next"));
}

TEST_F(TitleCheckTest, MissingTextIsDifferent) {
    loadTextTitle("", R"json([{"key": "(m=)(\\w+)()", "value": "fast"}])json");
    EXPECT_TRUE(check());
    EXPECT_THAT(takeLog(), ElementsAre("Brisk : game setting '' is not optimal 'fast'.", "next"));
}

TEST_F(TitleCheckTest, TextsAreComparedByteForByte) {
    loadTextTitle("m=Fast\n", R"json([{"key": "(m=)(\\w+)()", "value": "fast"}])json");
    EXPECT_TRUE(check());
    testing::writeFile(file(), "m=05\n");
    loadTitle(textTitle(R"json([{"key": "(m=)(\\w+)()", "value": "5"}])json"));
    EXPECT_TRUE(check());
    EXPECT_THAT(takeLog(), ElementsAre("Brisk : game setting 'Fast' is not optimal 'fast'.",
                                       "Brisk : game setting '05' is not optimal '5'.", "next"));
}

TEST_F(TitleCheckTest, DifferentNumberIsDecimalWhateverTheBaseOfTheLineBefore) {
    loadTextTitle("w=1280\n", R"json([{"key": "(w=)(-?\\d+)()", "value": -16}])json");
    logLine(std::hex, std::showbase, 255);
    EXPECT_TRUE(check());
    EXPECT_THAT(takeLog(), ElementsAre("0xff", "Brisk : game setting '1280' is not optimal '-16'.", "next"));
}

TEST_F(TitleCheckTest, NumbersAreComparedAsNumbers) {
    loadTextTitle("w= 005px\n", R"json([{"key": "(w=)(.*)()", "value": 5}])json");
    EXPECT_FALSE(check());
}

TEST_F(TitleCheckTest, MissingNumberReadsAsZero) {
    loadTextTitle("", R"json([{"key": "(w=)(\\d+)()", "value": 5}])json");
    EXPECT_TRUE(check());
    EXPECT_THAT(takeLog(), ElementsAre("Brisk : game setting '0' is not optimal '5'.", "next"));
    loadTitle(textTitle(R"json([{"key": "(w=)(\\d+)()", "value": 0}])json"));
    EXPECT_FALSE(check());
}

TEST_F(TitleCheckTest, FieldsAreCheckedInTheOrderOfTheirKeysUpToTheFirstDifference) {
    // Reading the third one would be an error.
    loadTextTitle("a=1\nb=2\nc=x\n", R"json([{"key": "(c=)(\\w+)()", "value": 0}, {"key": "(b=)(\\d+)()", "value": 7},
                                         {"key": "(a=)(\\d+)()", "value": 1}])json");
    EXPECT_TRUE(check());
    EXPECT_THAT(takeLog(), ElementsAre("Brisk : game setting '2' is not optimal '7'.", "next"));
}

TEST_F(TitleCheckTest, ResolutionNameStandsForTheNumberLastSet) {
    loadTextTitle("a=1\nb=2\nc=3\nd=4\n",
                  R"json([{"key": "(a=)(\\d+)()", "meta": "native_width", "value": 0},
                      {"key": "(b=)(\\d+)()", "meta": "native_height", "value": 0},
                      {"key": "(c=)(\\d+)()", "meta": "width", "value": 0},
                      {"key": "(d=)(\\d+)()", "meta": "height", "value": 0}])json");
    manager.setNativeResolution(1920, 1080);
    manager.setResolution(1600, 900);
    for (const char* content : {"a=1\nb=2\nc=3\nd=4\n", "a=1920\nb=2\nc=3\nd=4\n", "a=1920\nb=1080\nc=3\nd=4\n",
                                "a=1920\nb=1080\nc=1600\nd=4\n"}) {
        testing::writeFile(file(), content);
        EXPECT_TRUE(check()) << content;
    }
    testing::writeFile(file(), "a=1920\nb=1080\nc=1600\nd=900\n");
    EXPECT_FALSE(check());
    manager.setNativeResolution(3840, 2160);
    EXPECT_TRUE(check());
    EXPECT_THAT(takeLog(), ElementsAre("Brisk : game setting '1' is not optimal '1920'.",
                                       "Brisk : game setting '2' is not optimal '1080'.",
                                       "Brisk : game setting '3' is not optimal '1600'.",
                                       "Brisk : game setting '4' is not optimal '900'.",
                                       "Brisk : game setting '1920' is not optimal '3840'.", "next"));
}

TEST_F(TitleCheckTest, UnknownResolutionNameStandsForTheFieldsOwnNumber) {
    loadTextTitle("w=7\n", R"json([{"key": "(w=)(\\d+)()", "meta": "width", "value": 7}])json");
    manager.setNativeResolution(1920, 1080);
    EXPECT_FALSE(check());
    manager.setResolution(1600, 900);
    EXPECT_TRUE(check());
    loadTitle(textTitle(R"json([{"key": "(w=)(\\d+)()", "meta": "Width", "value": 7}])json"));
    EXPECT_FALSE(check());
}

TEST_F(TitleCheckTest, ResolutionNameBesideATextValueIsIgnored) {
    loadTextTitle("w=7\n", R"json([{"key": "(w=)(\\d+)()", "meta": "width", "value": "7"}])json");
    manager.setResolution(1600, 900);
    EXPECT_FALSE(check());
}

TEST_F(TitleCheckTest, EmptyTextValueIsANumber) {
    loadTextTitle("w=1600\n", R"json([{"key": "(w=)(\\d+)()", "meta": "width", "value": ""}])json");
    manager.setResolution(1600, 900);
    EXPECT_FALSE(check());
    manager.setResolution(1280, 720);
    EXPECT_TRUE(check());
}

TEST_F(TitleCheckTest, ResolutionsAreWrittenAsSigned32BitNumbers) {
    loadTextTitle("w=1\n", R"json([{"key": "(w=)(-?\\d+)()", "meta": "width"}])json");
    manager.setResolution(4294967295u, 0);
    EXPECT_TRUE(check());
    EXPECT_THAT(takeLog(), ElementsAre("Brisk : game setting '1' is not optimal '-1'.", "next"));
}

TEST_F(TitleCheckTest, DifferenceWithConditionsThatAreMetIsToBeOptimized) {
    loadTextTitle("w=1\nr=Vulkan\n", R"json([{"key": "(w=)(\\d+)()", "value": 5}])json",
                  R"json([{"key": "(r=)(\\w+)()", "presence": ["Vulkan"]
},
                      {"key": "(x=)(\\d+)()", "presence": [1], "absence": true}])json");
    EXPECT_TRUE(check());
    EXPECT_THAT(takeLog(), ElementsAre("Brisk : game setting '1' is not optimal '5'.", "next"));
}

TEST_F(TitleCheckTest, ForbiddenValueIsWrittenAtTheFrontOfTheNextLine) {
    loadTextTitle("w=1\nr=D3D11\n", R"json([{"key": "(w=)(\\d+)()", "value": 5}])json",
                  R"json([{"key": "(r=)(\\w+)()", "presence": ["Vulkan"]
}])json");
    EXPECT_FALSE(check());
    EXPECT_FALSE(check());
    EXPECT_THAT(takeLog(),
                ElementsAre("Brisk : game setting '1' is not optimal '5'.",
                            "Brisk : current configuration with key '(r=)(\\w+)()' and value 'D3D11' doesn't meet "
                            "requirements.Brisk : game setting '1' is not optimal '5'.",
                            "Brisk : current configuration with key '(r=)(\\w+)()' and value 'D3D11' doesn't meet "
                            "requirements.next"));
}

TEST_F(TitleCheckTest, MissingConditionMakesTheCheckFalse) {
    loadTextTitle("w=1\n", R"json([{"key": "(w=)(\\d+)()", "value": 5}])json",
                  R"json([{"key": "(r=)(\\w+)()", "presence": ["Vulkan"]
}, {"key": "(v=)(\\d+)()", "presence": [1]}])json");
    EXPECT_FALSE(check());
    EXPECT_THAT(takeLog(),
                ElementsAre("Brisk : game setting '1' is not optimal '5'.",
                            "Brisk : unable to find configuration field with key '(r=)(\\w+)()'. Skip patching.",
                            "Brisk : unable to find configuration field with key '(v=)(\\d+)()'. Skip patching.",
                            "next"));
}

TEST_F(TitleCheckTest, RegistryValuesAreChecked) {
    loadRegistryTitle(R"json([{"key": "Width", "meta": "width"}, {"key": "Upscaler", "value": "sharp"}])json",
                      R"json([{"key": "Fullscreen", "presence": [1], "absence": true}])json");
    manager.setResolution(1600, 900);
    EXPECT_TRUE(check());
    writeText("Upscaler", "sharp");
    writeNumber("Width", 1280);
    EXPECT_TRUE(check());
    writeNumber("Fullscreen", 0);
    EXPECT_FALSE(check());
    writeNumber("Fullscreen", 1);
    EXPECT_TRUE(check());
    writeNumber("Width", 1600);
    EXPECT_FALSE(check());
    EXPECT_THAT(takeLog(), ElementsAre("Brisk : game setting '' is not optimal 'sharp'.",
                                       "Brisk : game setting '1280' is not optimal '1600'.",
                                       "Brisk : game setting '1280' is not optimal '1600'.",
                                       "Brisk : current configuration with key 'Fullscreen' and value '0' doesn't meet "
                                       "requirements.Brisk : game setting '1280' is not optimal '1600'.",
                                       "next"));
}

TEST_F(TitleCheckTest, ConfigurationIsNotChanged) {
    loadTextTitle("w=1\nb=2", R"json([{"key": "(w=)(\\d+)()", "value": 5}])json");
    EXPECT_TRUE(check());
    EXPECT_EQ(testing::readFile(file()), "w=1\nb=2");
}

TEST_F(TitleCheckTest, ConfigurationIsLoadedAfreshEachTime) {
    loadTextTitle("w=1\n", R"json([{"key": "(w=)(\\d+)()", "value": 5}])json");
    EXPECT_TRUE(check());
    testing::writeFile(file(), "w=5\n");
    EXPECT_FALSE(check());
    std::filesystem::remove(file());
    EXPECT_FALSE(check());
    EXPECT_THAT(takeLog(), ElementsAre("Brisk : game setting '1' is not optimal '5'.",
                                       "Brisk : unable to load configuration.", "next"));
}

TEST_F(TitleCheckTest, AdaptersErrorsLeaveTheManagerUsable) {
    loadTextTitle("w=abc\n", R"json([{"key": "(w=)(.*)()", "value": 5}])json");
    EXPECT_THAT([&] { check(); }, ThrowsMessage<std::invalid_argument>(StrEq("invalid stoi argument")));
    EXPECT_THAT([&] { check(); }, ThrowsMessage<std::invalid_argument>(StrEq("invalid stoi argument")));
    testing::writeFile(file(), "w=3000000000\n");
    EXPECT_THAT([&] { check(); }, ThrowsMessage<std::out_of_range>(StrEq("stoi argument out of range")));
    loadTitle(textTitle(R"json([{"key": "(w=", "value": 5}])json"));
    EXPECT_THROW(check(), std::regex_error);
    loadTitle(textTitle(R"json([{"value": 5}])json"));
    EXPECT_THAT([&] { check(); }, ThrowsMessage<std::invalid_argument>(StrEq("invalid stoi argument")));
    loadTitle(textTitle(R"json([{"key": "(w=)(\\d)\\d*()", "value": 5}])json"));
    EXPECT_TRUE(check());
}

} // namespace
} // namespace brisk
