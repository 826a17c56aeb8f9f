// Matching executables to titles, and checking their settings.
#include "TitleManagerFixture.h"

namespace brisk {
namespace {

using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using TitleMatchingTest = testing::TitleManagerFixture;
using TitleFactsTest = testing::TitleManagerFixture;

TEST_F(TitleMatchingTest, UnknownExecutableIsNotSupportedButLogged) {
    EXPECT_FALSE(manager.isTitleSupported("Studio", "game.exe", "C:\\X"));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : publisher: 'Studio', binary name: 'game.exe'."));
}

TEST_F(TitleMatchingTest, KnownExecutableWithPublisherAndConfigurationIsSupported) {
    loadTextTitle("", "[]");
    EXPECT_TRUE(manager.isTitleSupported("Studio", "game.exe", ""));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : publisher: 'Studio', binary name: 'game.exe'.",
                                        "Brisk : checking path '" + filePath() + "'.", "Brisk : config found."));
}

TEST_F(TitleMatchingTest, KnownExecutableWithoutItsConfigurationIsNotSupported) {
    loadTitle(textTitle("[]"));
    EXPECT_FALSE(manager.isTitleSupported("Studio", "game.exe", ""));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : publisher: 'Studio', binary name: 'game.exe'.",
                                        "Brisk : checking path '" + filePath() + "'.", "Brisk : config not found."));
}

TEST_F(TitleMatchingTest, BinaryNamesAreComparedWholeAndByCase) {
    loadTextTitle("", "[]");
    for (const char* name : {"Game.exe", "GAME.EXE", "game", "game.exe ", "C:\\game.exe", ""}) {
        EXPECT_FALSE(manager.isTitleSupported("Studio", name, "")) << name;
        EXPECT_THAT(log.take(), ElementsAre("Brisk : publisher: 'Studio', binary name: '" + std::string(name) + "'."));
    }
}

TEST_F(TitleMatchingTest, TitleWithoutABinaryNameIsFoundUnderTheEmptyOne) {
    testing::writeFile(file(), "");
    json title = textTitle("[]");
    title.erase("binary_name");
    loadTitle(title);
    EXPECT_TRUE(manager.isTitleSupported("", "", ""));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : publisher: '', binary name: ''.",
                                        "Brisk : checking path '" + filePath() + "'.", "Brisk : config found."));
}

TEST_F(TitleMatchingTest, PublishersAreComparedWholeAndByCase) {
    loadTextTitle("", "[]");
    for (const char* publisher : {"studio", "Studio ", "Stud", "Studio Ltd."}) {
        EXPECT_FALSE(manager.isTitleSupported(publisher, "game.exe", "")) << publisher;
        EXPECT_THAT(log.take(),
                    ElementsAre("Brisk : publisher: '" + std::string(publisher) + "', binary name: 'game.exe'."));
    }
}

TEST_F(TitleMatchingTest, EmptyPublisherMatchesAnyTitle) {
    loadTextTitle("", "[]");
    EXPECT_TRUE(manager.isTitleSupported("", "game.exe", ""));
    json title = textTitle("[]");
    title.erase("publisher");
    loadTitle(title);
    EXPECT_TRUE(manager.isTitleSupported("", "game.exe", ""));
}

TEST_F(TitleMatchingTest, TitleWithoutAPublisherMatchesNoExecutableThatHasOne) {
    json title = textTitle("[]");
    title["publisher"] = "";
    testing::writeFile(file(), "");
    loadTitle(title);
    EXPECT_FALSE(manager.isTitleSupported("Studio", "game.exe", ""));
    EXPECT_TRUE(manager.isTitleSupported("", "game.exe", ""));
}

TEST_F(TitleMatchingTest, GamesFolderIsWhereItsConfigurationIsLookedFor) {
    testing::writeFile(file(), "");
    json title = textTitle("[]");
    title["config_locations"] = json::array({"%APPDIR%\\game.cfg"});
    loadTitle(title);
    EXPECT_FALSE(manager.isTitleSupported("", "game.exe", ""));
    EXPECT_TRUE(manager.isTitleSupported("", "game.exe", folder.narrow()));
    EXPECT_TRUE(manager.isTitleSupported("", "game.exe", ""));
}

TEST_F(TitleMatchingTest, RegistryTitleIsSupportedWhenItsKeyExists) {
    json title = textTitle("[]");
    title["config_type"] = "reg";
    title["config_locations"] = json::array({"HKEY_CURRENT_USER/Software/Studio/Game"});
    loadTitle(title);
    EXPECT_FALSE(manager.isTitleSupported("Studio", "game.exe", ""));
    writeNumber("Width", 1);
    EXPECT_TRUE(manager.isTitleSupported("Studio", "game.exe", ""));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : publisher: 'Studio', binary name: 'game.exe'.",
                                        "Brisk : checking registry path 'Software\\Studio\\Game'.",
                                        "Brisk : RegOpenKeyEx failed. Error 2.",
                                        "Brisk : publisher: 'Studio', binary name: 'game.exe'.",
                                        "Brisk : checking registry path 'Software\\Studio\\Game'."));
}

TEST_F(TitleMatchingTest, FileSystemErrorLeavesTheManagerUsable) {
    loadTextTitle("", "[]");
    GetFileAttributesWFault.fail(INVALID_FILE_ATTRIBUTES, ERROR_ACCESS_DENIED);
    EXPECT_THROW(manager.isTitleSupported("", "game.exe", ""), std::filesystem::filesystem_error);
    faults::reset();
    EXPECT_TRUE(manager.isTitleSupported("", "game.exe", ""));
}

TEST_F(TitleFactsTest, NothingIsKnownOfAnUnknownExecutable) {
    EXPECT_EQ(manager.getTitleName("game.exe"), "");
    EXPECT_THAT(manager.getBinaryNames(), IsEmpty());
    EXPECT_FALSE(manager.isLumaSupported("game.exe"));
    EXPECT_EQ(manager.getSettingText("game.exe"), "");
    EXPECT_FALSE(manager.isTitleIdKnown(0));
    EXPECT_FALSE(manager.isTitleNeedToBeOptimized("game.exe"));
    EXPECT_FALSE(manager.optimizeTitle("game.exe"));
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(TitleFactsTest, NothingIsKnownOfAnExecutableInAnotherLetterCase) {
    testing::writeFile(file(), "w=1\n");
    json title = textTitle(R"json([{"key": "(w=)(\\d+)()", "text": "words", "value": 5}])json");
    title["luma_version"] = 1;
    loadTitle(title);
    EXPECT_EQ(manager.getTitleName("Game.exe"), "");
    EXPECT_FALSE(manager.isLumaSupported("Game.exe"));
    EXPECT_EQ(manager.getSettingText("Game.exe"), "");
    EXPECT_FALSE(manager.isTitleNeedToBeOptimized("Game.exe"));
    EXPECT_FALSE(manager.optimizeTitle("Game.exe"));
    EXPECT_EQ(testing::readFile(file()), "w=1\n");
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(manager.getSettingText("game.exe"), "words");
}

TEST_F(TitleFactsTest, BinaryNamesAreGivenInTheOrderOfTheirBytes) {
    load(R"([{"config_type": "txt", "binary_name": "b.exe"}, {"config_type": "txt", "binary_name": "\u00e4.exe"},
             {"config_type": "reg", "binary_name": "B.exe"}, {"config_type": "txt", "binary_name": "a.exe"}])"_json);
    EXPECT_THAT(manager.getBinaryNames(), ElementsAre("B.exe", "a.exe", "b.exe", "\u00E4.exe"));
}

TEST_F(TitleFactsTest, LumaIsSupportedByATitleWithAVersionOfIt) {
    load(R"([{"config_type": "txt", "binary_name": "a.exe", "luma_version": 1},
             {"config_type": "txt", "binary_name": "b.exe", "luma_version": 0},
             {"config_type": "txt", "binary_name": "c.exe"}])"_json);
    EXPECT_TRUE(manager.isLumaSupported("a.exe"));
    EXPECT_FALSE(manager.isLumaSupported("b.exe"));
    EXPECT_FALSE(manager.isLumaSupported("c.exe"));
}

TEST_F(TitleFactsTest, SettingTextIsTheFirstOneInTheOrderOfKeysOfALumaTitle) {
    load(R"([{"config_type": "txt", "binary_name": "a.exe", "luma_version": 1, "config_fields": [
                {"key": "c", "text": "third"}, {"key": "b", "text": "second"}, {"key": "a"}]},
             {"config_type": "txt", "binary_name": "b.exe", "config_fields": [{"key": "a", "text": "words"}]},
             {"config_type": "txt", "binary_name": "c.exe", "luma_version": 1, "config_fields": [{"key": "a"}]},
             {"config_type": "txt", "binary_name": "d.exe", "luma_version": 1}])"_json);
    EXPECT_EQ(manager.getSettingText("a.exe"), "second");
    EXPECT_EQ(manager.getSettingText("b.exe"), "");
    EXPECT_EQ(manager.getSettingText("c.exe"), "");
    EXPECT_EQ(manager.getSettingText("d.exe"), "");
}

TEST_F(TitleFactsTest, IdsAreUnsigned32BitNumbers) {
    load(R"([{"config_type": "txt", "id": 4294967295}, {"config_type": "txt", "id": 0}])"_json);
    EXPECT_TRUE(manager.isTitleIdKnown(4294967295u));
    EXPECT_TRUE(manager.isTitleIdKnown(0));
    EXPECT_FALSE(manager.isTitleIdKnown(1));
}

} // namespace
} // namespace brisk
