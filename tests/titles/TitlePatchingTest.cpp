// The rewriting of a title's settings.
#include "TitleManagerFixture.h"

#include <regex>
#include <stdexcept>

namespace brisk {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StrEq;
using ::testing::ThrowsMessage;

class TitlePatchingTest : public testing::TitleManagerFixture {
protected:
    bool optimize() { return manager.optimizeTitle("game.exe"); }

    // The file's bytes after patching.
    std::string patched() {
        EXPECT_TRUE(optimize());
        return testing::readFile(file());
    }

    // Notes the calls that a registry title makes.
    void recordRegistry() {
        RegQueryValueExAFault.intercept(
            [this](HKEY key, const char* name, DWORD* reserved, DWORD* type, BYTE* data, DWORD* size) {
                if (data) {
                    calls.push_back("read " + std::string(name));
                }
                return RegQueryValueExAFault.real(key, name, reserved, type, data, size);
            });
        RegSetValueExAFault.intercept(
            [this](HKEY key, const char* name, DWORD reserved, DWORD type, const BYTE* data, DWORD size) {
                calls.push_back("write " + std::string(name) + (type == REG_SZ ? " as text" : " as number"));
                return RegSetValueExAFault.real(key, name, reserved, type, data, size);
            });
    }

    std::vector<std::string> calls;
};

TEST_F(TitlePatchingTest, ConfigurationThatCannotBeLoadedFailsSilently) {
    loadTitle(textTitle(R"json([{"key": "(w=)(\\d+)()", "value": 5}])json"));
    EXPECT_FALSE(optimize());
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(file()));
}

TEST_F(TitlePatchingTest, TitleWithoutFieldsIsNotSaved) {
    loadTextTitle("a\nb\n", "[]");
    EXPECT_FALSE(optimize());
    EXPECT_EQ(testing::readFile(file()), "a\nb\n");
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(TitlePatchingTest, EveryFieldIsWrittenAndTheTitleIsLogged) {
    loadTextTitle("w=1\r\nh=900\r\nm=slow\r\nn=7\r\n",
                  R"json([{"key": "(w=)(\\d+)()", "meta": "width", "value": 0},
                      {"key": "(h=)(\\d+)()", "meta": "height", "value": 0},
                      {"key": "(m=)(\\w+)()", "value": "fast"},
                      {"key": "(n=)(-?\\d+)()", "value": -8}])json");
    manager.setResolution(1600, 900);
    EXPECT_EQ(patched(), "w=1600\r\nh=900\r\nm=fast\r\nn=-8\r\n");
    EXPECT_THAT(log.take(), ElementsAre("Brisk : 'The Game' optimized."));
    EXPECT_FALSE(manager.isTitleNeedToBeOptimized("game.exe"));
}

TEST_F(TitlePatchingTest, UnknownResolutionNameStandsForTheFieldsOwnNumber) {
    loadTextTitle("a=1\r\nb=1\r\n", R"json([{"key": "(a=)(\\d+)()", "meta": "width", "value": 7},
                                         {"key": "(b=)(\\d+)()", "meta": "Width", "value": 8}])json");
    manager.setNativeResolution(1920, 1080);
    EXPECT_EQ(patched(), "a=7\r\nb=8\r\n");
    manager.setResolution(1600, 900);
    EXPECT_EQ(patched(), "a=1600\r\nb=8\r\n");
}

TEST_F(TitlePatchingTest, ResolutionNameBesideATextValueIsIgnored) {
    loadTextTitle("w=1\r\n", R"json([{"key": "(w=)(\\d+)()", "meta": "width", "value": "7"}])json");
    manager.setResolution(1600, 900);
    EXPECT_EQ(patched(), "w=7\r\n");
}

TEST_F(TitlePatchingTest, ConditionsAreNotLookedAt) {
    loadTextTitle("w=1\r\n", R"json([{"key": "(w=)(\\d+)()", "value": 5}])json",
                  R"json([{"key": "(r=)(\\w+)()", "presence": ["x"]
}])json");
    EXPECT_EQ(patched(), "w=5\r\n");
}

TEST_F(TitlePatchingTest, TextTitleInWhichNothingMatchesIsSavedAllTheSame) {
    loadTextTitle("a\nb\n", R"json([{"key": "(w=)(\\d+)()", "value": 5}])json");
    EXPECT_EQ(patched(), "a\r\nb\r\n");
    EXPECT_THAT(log.take(), ElementsAre("Brisk : 'The Game' optimized."));
}

TEST_F(TitlePatchingTest, FieldsAreWrittenInTheOrderOfTheirKeys) {
    loadRegistryTitle(R"json([{"key": "Width", "meta": "native_width"}, {"key": "Mode", "value": "fast"},
                          {"key": "Already", "value": 3}, {"key": "height", "meta": "native_height"}])json");
    writeNumber("Already", 3);
    manager.setNativeResolution(1920, 1080);
    recordRegistry();
    EXPECT_TRUE(optimize());
    EXPECT_THAT(calls, ElementsAre("write Already as number", "write Mode as text", "write Width as number",
                                   "write height as number"));
    EXPECT_EQ(readValue("Already"), "3");
    EXPECT_EQ(readValue("Mode"), "\"fast\"");
    EXPECT_EQ(readValue("Width"), "1920");
    EXPECT_EQ(readValue("height"), "1080");
    EXPECT_THAT(log.take(), ElementsAre("Brisk : 'The Game' optimized."));
}

TEST_F(TitlePatchingTest, TitleOfWhichEveryWriteFailsIsNotPatched) {
    loadRegistryTitle(R"json([{"key": "Width", "value": 5}, {"key": "Mode", "value": "fast"},
                          {"key": "Missing", "value": "x", "create_key": "New", "create_value": "*"}])json");
    RegSetValueExAFault.fail(ERROR_ACCESS_DENIED);
    EXPECT_FALSE(optimize());
    EXPECT_THAT(log.take(), ElementsAre("Brisk : setValue failed for 'New'. Error 5.",
                                        "Brisk : setValue failed for 'Mode'. Error 5.",
                                        "Brisk : setValue failed for 'Width'. Error 5."));
    faults::reset();
    EXPECT_TRUE(optimize());
    EXPECT_EQ(readValue("New"), "\"x\"");
    EXPECT_EQ(readValue("Mode"), "\"fast\"");
    EXPECT_EQ(readValue("Width"), "5");
    EXPECT_THAT(log.take(), ElementsAre("Brisk : 'The Game' optimized."));
}

TEST_F(TitlePatchingTest, OneSuccessfulWriteIsEnough) {
    loadRegistryTitle(R"json([{"key": "A", "value": 1}, {"key": "B", "value": 2}, {"key": "C", "value": "3"}])json");
    RegSetValueExAFault.fail(ERROR_ACCESS_DENIED, ERROR_SUCCESS, 2);
    EXPECT_TRUE(optimize());
    EXPECT_EQ(readValue("A"), "1");
    EXPECT_EQ(readValue("B"), "none");
    EXPECT_THAT(log.take(), ElementsAre("Brisk : setValue failed for 'B'. Error 5.",
                                        "Brisk : setValue failed for 'C'. Error 5.", "Brisk : 'The Game' optimized."));
}

TEST_F(TitlePatchingTest, ConfigurationThatCannotBeSavedFailsSilently) {
    loadTextTitle("w=1\r\n", R"json([{"key": "(w=)(\\d+)()", "value": 5}])json");
    const HANDLE reader =
        CreateFileW(file().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_FALSE(optimize());
    CloseHandle(reader);
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(testing::readFile(file()), "w=1\r\n");
    testing::writeFile(file(), "w=2\r\nx\r\n");
    EXPECT_EQ(patched(), "w=5\r\nx\r\n");
}

TEST_F(TitlePatchingTest, MissingTextIsCreatedFromItsTemplate) {
    loadTextTitle("[video]\r\nx=1\r\n", R"json([{"key": "(mode=)(\\w+)()", "value": "fast",
                                             "create_key": "(\\[video\\]\\n)()()", "create_value": "mode=*\n"}])json");
    EXPECT_EQ(patched(), "[video]\r\nmode=fast\r\nx=1\r\n");
    // Now it exists and is only set.
    testing::writeFile(file(), "[video]\r\nmode=slow\r\nx=1\r\n");
    EXPECT_EQ(patched(), "[video]\r\nmode=fast\r\nx=1\r\n");
}

TEST_F(TitlePatchingTest, EmptyTextCountsAsMissing) {
    loadTextTitle("[video]\r\nmode=\r\n", R"json([{"key": "(mode=)(\\w*)()", "value": "fast",
                                               "create_key": "(\\[video\\]\\n)()()", "create_value": "mode=*\n"}])json");
    EXPECT_EQ(patched(), "[video]\r\nmode=fast\r\nmode=\r\n");
}

TEST_F(TitlePatchingTest, MissingNumberIsCreatedFromItsTemplateWithTheFieldsOwnNumber) {
    loadTextTitle("[video]\r\n", R"json([{"key": "(w=)(\\d+)()", "meta": "width", "value": 640,
                                      "create_key": "(\\[video\\]\\n)()()", "create_value": "w=*\n"}])json");
    manager.setResolution(1600, 900);
    EXPECT_EQ(patched(), "[video]\r\nw=640\r\n");
    // Only a setting that exists receives the resolution.
    EXPECT_EQ(patched(), "[video]\r\nw=1600\r\n");
}

TEST_F(TitlePatchingTest, OnlyTheFirstStarOfATemplateIsReplaced) {
    loadTextTitle("#\r\n#\r\n", R"json([{"key": "(a=)(\\w+)()", "value": "x", "create_key": "(#)(\\n)(#)",
                                     "create_value": "*,*"}])json");
    EXPECT_EQ(patched(), "#x,*#\r\n");
    loadTextTitle("#\r\n", R"json([{"key": "(a=)(\\w+)()", "value": "x", "create_key": "(#)()()", "create_value": "y"
    }])json");
    EXPECT_EQ(patched(), "#y\r\n");
    loadTextTitle("#1\r\n", R"json([{"key": "(a=)(\\w+)()", "value": "x", "create_key": "(#)(1)()"
    }])json");
    EXPECT_EQ(patched(), "#\r\n");
}

TEST_F(TitlePatchingTest, ValueWithAStarIsNotExpandedFurther) {
    loadTextTitle("#\r\n", R"json([{"key": "(a=)(\\w+)()", "value": "*x*", "create_key": "(#)()()",
                                "create_value": "<*>"}])json");
    EXPECT_EQ(patched(), "#<*x*>\r\n");
}

TEST_F(TitlePatchingTest, TemplateWithoutAKeyToCreateIsIgnored) {
    loadTextTitle("#\r\n", R"json([{"key": "(a=)(\\w+)()", "value": "x", "create_value": "y"}])json");
    EXPECT_EQ(patched(), "#\r\n");
}

TEST_F(TitlePatchingTest, MissingRegistryValuesAreCreatedAsText) {
    loadRegistryTitle(R"json([{"key": "Mode", "value": "fast", "create_key": "Mode", "create_value": "*"},
                          {"key": "Width", "meta": "width", "value": 640, "create_key": "Width", "create_value": "*"}])json");
    manager.setResolution(1600, 900);
    recordRegistry();
    EXPECT_TRUE(optimize());
    EXPECT_THAT(calls, ElementsAre("read Mode", "write Mode as text", "read Width", "write Width as text"));
    EXPECT_EQ(readValue("Mode"), "\"fast\"");
    EXPECT_EQ(readValue("Width"), "\"640\"");
}

TEST_F(TitlePatchingTest, RegistryValuesThatExistAreSetAlthoughTheyCouldBeCreated) {
    loadRegistryTitle(R"json([{"key": "Mode", "value": "fast", "create_key": "NewMode", "create_value": "*"},
                          {"key": "Width", "meta": "width", "create_key": "NewWidth", "create_value": "*"}])json");
    writeText("Mode", "slow");
    writeNumber("Width", 1);
    manager.setResolution(1600, 900);
    recordRegistry();
    EXPECT_TRUE(optimize());
    EXPECT_THAT(calls, ElementsAre("read Mode", "write Mode as text", "read Width", "write Width as number"));
    EXPECT_EQ(readValue("Mode"), "\"fast\"");
    EXPECT_EQ(readValue("Width"), "1600");
}

TEST_F(TitlePatchingTest, SmallestNumberCountsAsMissing) {
    loadTextTitle("w=-2147483648 #\r\n", R"json([{"key": "(w=)(-?\\d+)()", "value": 5, "create_key": "(#)()()",
                                              "create_value": "*"}])json");
    EXPECT_EQ(patched(), "w=-2147483648 #5\r\n");
}

TEST_F(TitlePatchingTest, NumberThatCannotBeReadIsAnErrorOnlyWhereItCouldBeCreated) {
    loadTextTitle("w=abc\r\n", R"json([{"key": "(w=)(\\w+)()", "value": 5}])json");
    EXPECT_EQ(patched(), "w=5\r\n");
    loadTextTitle("w=abc\r\n", R"json([{"key": "(w=)(\\w+)()", "value": 5, "create_key": "(#)()()"
    }])json");
    EXPECT_THAT([&] { optimize(); }, ThrowsMessage<std::invalid_argument>(StrEq("invalid stoi argument")));
    EXPECT_EQ(testing::readFile(file()), "w=abc\r\n");
    EXPECT_EQ(manager.getTitleName("game.exe"), "The Game");
}

TEST_F(TitlePatchingTest, ErrorHalfWayLeavesTheFileAsItIs) {
    loadTextTitle("a=1\r\nb=1\r\n", R"json([{"key": "(a=)(\\d+)()", "value": 5}, {"key": "(b=", "value": 6}])json");
    EXPECT_THROW(optimize(), std::regex_error);
    EXPECT_EQ(testing::readFile(file()), "a=1\r\nb=1\r\n");
    EXPECT_THAT(log.take(), IsEmpty());
    loadTitle(textTitle(R"json([{"key": "(b=)(\\d+)()", "value": 6}])json"));
    EXPECT_EQ(patched(), "a=1\r\nb=6\r\n");
}

} // namespace
} // namespace brisk
