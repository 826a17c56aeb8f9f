#include "tools/titles/CommandFixture.h"
#include "tools/titles/CommandLine.h"
#include "tools/titles/Commands.h"
#include "tools/titles/ExecutableSample.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace brisk::workbench {
namespace {

class NewCommandTest : public CommandFixture {};

constexpr char kNoId[] = "brisktitles: fill in \"id\", the game id under which the host announces the game\n";
constexpr char kNoGame[] = "brisktitles: fill in \"title_name\", \"publisher\" and \"binary_name\", or give the game's "
                           "executable: --exe GAME.EXE\n";
constexpr char kNoPlace[] = "brisktitles: fill in \"config_locations\", or give the game's settings: --file SETTINGS\n";
constexpr char kNoFields[] = "brisktitles: fill in \"config_fields\": `brisktitles key --file FILE:LINE` proposes a "
                             "setting's key\n";

TEST_F(NewCommandTest, TitleHasNamesCompanyAndPlace) {
    const std::string game = write("Harbour/Orchard.exe", executableWith({{0x0409, versionResource(commonVersion())}}));
    const std::string settings = write("Users/Me/AppData/Local/Glass Orchard/Settings.ini", "[A]\nLanguage=en\n");
    EXPECT_EQ(runCommand(addNewCommand, {"new", "--exe", game, "--file", settings}),
              (Answer{0,
                      "{\n"
                      "  \"id\": null,\n"
                      "  \"config_type\": \"txt\",\n"
                      "  \"title_name\": \"Glass Orchard\",\n"
                      "  \"publisher\": \"Tallow & Reed\",\n"
                      "  \"binary_name\": \"Orchard.exe\",\n"
                      "  \"config_locations\": [ \"%LOCALAPPDATA%\\\\Glass Orchard\\\\Settings.ini\" ],\n"
                      "  \"config_fields\": []\n"
                      "}\n",
                      std::string(kNoId) + kNoFields}));
}

TEST_F(NewCommandTest, ScreensWidthAndHeightAreProposedAsFields) {
    const std::string settings = write("AppData/Roaming/G/a.ini", "[A]\r\nScreenWidth=1280\r\nScreenHeight=720\r\n"
                                                                  "ShadowMapWidth=2048\r\nResolution=1280x720\r\n");
    EXPECT_EQ(runCommand(addNewCommand, {"new", "--file", settings}),
              (Answer{0,
                      "{\n"
                      "  \"id\": null,\n"
                      "  \"config_type\": \"txt\",\n"
                      "  \"title_name\": \"\",\n"
                      "  \"publisher\": \"\",\n"
                      "  \"binary_name\": \"\",\n"
                      "  \"config_locations\": [ \"%APPDATA%\\\\G\\\\a.ini\" ],\n"
                      "  \"config_fields\": [\n"
                      "    { \"key\": \"(\\\\nScreenWidth=)(\\\\d+)()\", \"meta\": \"width\", \"value\": 0 },\n"
                      "    { \"key\": \"(\\\\nScreenHeight=)(\\\\d+)()\", \"meta\": \"height\", \"value\": 0 },\n"
                      "    { \"key\": \"(\\\\nResolution=)(\\\\d+)(x)\", \"meta\": \"width\", \"value\": 0 },\n"
                      "    { \"key\": \"(\\\\nResolution=\\\\d+x)(\\\\d+)()\", \"meta\": \"height\", \"value\": 0 }\n"
                      "  ]\n"
                      "}\n",
                      std::string(kNoId) + kNoGame}));
}

TEST_F(NewCommandTest, WithoutFilesThereIsAnEmptyTitle) {
    EXPECT_EQ(runCommand(addNewCommand, {"new"}), (Answer{0,
                                                          "{\n"
                                                          "  \"id\": null,\n"
                                                          "  \"config_type\": \"txt\",\n"
                                                          "  \"title_name\": \"\",\n"
                                                          "  \"publisher\": \"\",\n"
                                                          "  \"binary_name\": \"\",\n"
                                                          "  \"config_locations\": [],\n"
                                                          "  \"config_fields\": []\n"
                                                          "}\n",
                                                          std::string(kNoId) + kNoGame + kNoPlace + kNoFields}));
}

TEST_F(NewCommandTest, NotesTellWhatTheAuthorHasToLookAt) {
    SampleVersion version = commonVersion();
    version.languages[0].texts = {{"OriginalFilename", u"shipping.exe"}, {"ProductName", u"Gl\u00E4ser & Co\u2122 "}};
    const std::string game = write("Game.exe", executableWith({{0x0409, versionResource(version)}}));
    const Answer answer = runCommand(addNewCommand, {"new", "--exe", game, "--format", "json"});
    EXPECT_EQ(answer.code, 0);
    EXPECT_EQ(answer.error, "");
    const auto json = nlohmann::json::parse(answer.out);
    EXPECT_EQ(json["title"]["title_name"], "Gl\xC3\xA4ser & Co");
    EXPECT_EQ(json["title"]["publisher"], "");
    EXPECT_EQ(
        json["notes"],
        (nlohmann::json{
            "fill in \"id\", the game id under which the host announces the game",
            "a notification cannot show \"title_name\" as it is: write it in plain ASCII without '&' and '<'",
            "the executable has no company name: it matches whatever \"publisher\" is",
            "the executable was once named \"shipping.exe\": \"binary_name\" is the name under which the game runs",
            "fill in \"config_locations\", or give the game's settings: --file SETTINGS",
            "fill in \"config_fields\": `brisktitles key --file FILE:LINE` proposes a setting's key"}));
}

TEST_F(NewCommandTest, WhatCannotBeReadEndsInAMessage) {
    const std::string text = write("Game.exe", "#!/bin/sh\n");
    EXPECT_EQ(runCommand(addNewCommand, {"new", "--exe", text}),
              (Answer{2, "", "brisktitles: cannot take " + text + ": it is no Windows executable\n"}));
    EXPECT_EQ(runCommand(addNewCommand, {"new", "--file", "no such file"}),
              (Answer{2, "", "brisktitles: cannot read no such file\n"}));
    const std::string wide = write("wide.ini", std::string("\xFF\xFE[\0A\0]\0", 8));
    EXPECT_EQ(runCommand(addNewCommand, {"new", "--file", wide}),
              (Answer{2, "", "brisktitles: " + wide + " is UTF-16, in which the service finds no setting\n"}));
    EXPECT_EQ(runCommand(addNewCommand, {"new", "more"}).code, 2);
}

TEST_F(NewCommandTest, HelpHasExamples) {
    EXPECT_THAT(runCommand(addNewCommand, {"new", "--help"}).out,
                ::testing::HasSubstr("Examples:\n  brisktitles new --exe "));
}

} // namespace
} // namespace brisk::workbench
