#include "tools/titles/CommandFixture.h"
#include "tools/titles/CommandLine.h"
#include "tools/titles/Commands.h"
#include "tools/titles/SettingsSamples.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace brisk::workbench {
namespace {

class KeyCommandTest : public CommandFixture {};

TEST_F(KeyCommandTest, PrintsTheKeyRawAndAsJsonAndItsField) {
    const std::string file = write("Settings.ini", "[A]\r\nWidth=1280\r\nMode=Very High\r\n");
    EXPECT_EQ(runCommand(addKeyCommand, {"key", "--file", file + ":2"}),
              (Answer{0,
                      file + ":2:7: Width is \"1280\"\n"
                             "  key:   (\\nWidth=)(\\d+)()\n"
                             "  JSON:  \"(\\\\nWidth=)(\\\\d+)()\"\n"
                             "  field: {\"key\":\"(\\\\nWidth=)(\\\\d+)()\",\"meta\":\"width\",\"value\":0}\n",
                      ""}));
    EXPECT_EQ(runCommand(addKeyCommand, {"key", "--file", file + ":3", "--value", "Low"}),
              (Answer{0,
                      file + ":3:6: Mode is \"Very High\"\n"
                             "  key:   (\\nMode=)([^\\n]*)()\n"
                             "  JSON:  \"(\\\\nMode=)([^\\\\n]*)()\"\n"
                             "  field: {\"key\":\"(\\\\nMode=)([^\\\\n]*)()\",\"value\":\"Low\"}\n",
                      ""}));
}

TEST_F(KeyCommandTest, ValueChoosesAmongSeveralOfALine) {
    const std::string file = write("video.xml", settingsSample("video.xml"));
    EXPECT_EQ(runCommand(addKeyCommand, {"key", "--file", file + ":4", "--value", "1080"}).out,
              file + ":4:36: resolution height is \"1080\"\n"
                     "  key:   (<resolution(?:\\s[^>]*)?\\sheight=\")(\\d+)(\")\n"
                     "  JSON:  \"(<resolution(?:\\\\s[^>]*)?\\\\sheight=\\\")(\\\\d+)(\\\")\"\n"
                     "  field: {\"key\":\"(<resolution(?:\\\\s[^>]*)?\\\\sheight=\\\")(\\\\d+)(\\\")\","
                     "\"meta\":\"height\",\"value\":0}\n");
    const Answer all = runCommand(addKeyCommand, {"key", "--file", file + ":4", "--format", "json"});
    EXPECT_EQ(all.code, 0);
    const auto json = nlohmann::json::parse(all.out);
    std::vector<std::string> names;
    for (const auto& key : json["keys"]) {
        names.push_back(key["name"]);
    }
    EXPECT_THAT(names, ::testing::ElementsAre("resolution width", "resolution height", "resolution maxwidth"));
}

TEST_F(KeyCommandTest, JsonHoldsKeysAndComplaints) {
    const std::string file = write("a.cfg", "gamma=-0.5\n");
    const Answer answer = runCommand(addKeyCommand, {"key", "--file", file + ":1", "--format", "json"});
    EXPECT_EQ(answer.code, 0);
    EXPECT_EQ(
        nlohmann::json::parse(answer.out),
        (nlohmann::json{
            {"file", file},
            {"keys",
             {{{"name", "gamma"},
               {"line", 1},
               {"column", 7},
               {"value", "-0.5"},
               {"key", "((?:^|\\n)gamma=)(-?[\\d.]+)()"},
               {"field", {{"key", "((?:^|\\n)gamma=)(-?[\\d.]+)()"}, {"value", "-0.5"}}},
               {"notes", {"a fraction is a text for the service: write the value as the game does, to the digit"}}}}},
            {"complaints", nlohmann::json::array()}}));
}

TEST_F(KeyCommandTest, LineWithoutASettingIsComplainedOf) {
    const std::string file = write("a.ini", "[A]\n; Width=1\n");
    EXPECT_EQ(runCommand(addKeyCommand, {"key", "--file", file + ":2"}),
              (Answer{1, file + ":2:1: no setting stands on this line, or it is a comment\n", ""}));
}

TEST_F(KeyCommandTest, WhatCannotBeReadIsSaid) {
    const std::string file = write("a.ini", "a=1\nb=2\n\x1A\nc=3\n");
    EXPECT_EQ(
        runCommand(addKeyCommand, {"key", "--file", file + ":4"}),
        (Answer{2, "", "brisktitles: " + file + " ends with line 3 for the service, which reads up to a 0x1A\n"}));
    EXPECT_EQ(runCommand(addKeyCommand, {"key", "--file", file}),
              (Answer{2, "",
                      "brisktitles: --file names no line; write --file " + file + ":12 for the setting on line 12\n"}));
    EXPECT_EQ(runCommand(addKeyCommand, {"key", "--file", "nothing:1"}),
              (Answer{2, "", "brisktitles: cannot read nothing\n"}));
    const std::string wide = write("wide.ini", std::string("\xFF\xFE"
                                                           "a\0",
                                                           4));
    EXPECT_EQ(runCommand(addKeyCommand, {"key", "--file", wide + ":1"}),
              (Answer{2, "", "brisktitles: " + wide + " is UTF-16, in which the service finds no setting\n"}));
    EXPECT_EQ(runCommand(addKeyCommand, {"key"}).code, 2);
}

TEST_F(KeyCommandTest, ExpressionsMatchesAreShownWithTheirGroups) {
    const std::string file = write("a.ini", "[A]\r\nWidth=1280 ; \xC3\xBC\r\nB=1\r\n");
    EXPECT_EQ(runCommand(addKeyCommand, {"key", "--raw", "(\\nWidth=)(\\d+)( ;)", "--file", file}),
              (Answer{0,
                      "JSON: \"(\\\\nWidth=)(\\\\d+)( ;)\"\n" + file +
                          ":1:4: match 1: 1 \"\\nWidth=\", 2 \"1280\", 3 \" ;\"\n"
                          "    [A]\n"
                          "       1\n"
                          "    Width=1280 ; \xC3\xBC\n"
                          "    111111222233\n"
                          "1 match\n",
                      ""}));
}

TEST_F(KeyCommandTest, SeveralMatchesAndWarningsAreComplaints) {
    const std::string file = write("a.ini", "Width=1\nMaxWidth=2\n");
    EXPECT_EQ(
        runCommand(addKeyCommand, {"key", "--raw", "(Width=)(\\d+)()", "--file", file}),
        (Answer{1,
                "JSON: \"(Width=)(\\\\d+)()\"\n"
                "expression:1:1: warning[pattern-unanchored]: nothing stands before the name, so longer names that "
                "end in it are changed, too (\"Width=\" in \"MaxWidth=\"); begin with (?:^|\\\\n) or \\\\b\n"
                "    \"(Width=)(\\\\d+)()\"\n"
                "    ^~~~~~~~~~~~~~~~~~\n" +
                    file +
                    ":1:1: match 1: 1 \"Width=\", 2 \"1\", 3 \"\"\n"
                    "    Width=1\n"
                    "    1111112\n" +
                    file +
                    ":2:4: match 2: 1 \"Width=\", 2 \"2\", 3 \"\"\n"
                    "    MaxWidth=2\n"
                    "       1111112\n"
                    "2 matches\n",
                ""}));
}

TEST_F(KeyCommandTest, WrongExpressionIsShownWithItsFault) {
    const std::string file = write("a.ini", "Width=1\n");
    const Answer answer = runCommand(addKeyCommand, {"key", "--raw", "(\\n[a)()()", "--file", file});
    EXPECT_EQ(answer.code, 1);
    EXPECT_THAT(answer.out, ::testing::HasSubstr("error[pattern-syntax]: this '[' is never closed"));
    EXPECT_THAT(answer.out, ::testing::EndsWith("the service ends here: the expression is wrong, or the search is "
                                                "given up\n"));
}

TEST_F(KeyCommandTest, MatchesAreToldAsJson) {
    const std::string file = write("a.ini", "a=1\n");
    const Answer answer =
        runCommand(addKeyCommand, {"key", "--raw", "(\\ba=)(\\d)()", "--file", file, "--format", "json"});
    EXPECT_EQ(answer.code, 0);
    EXPECT_EQ(nlohmann::json::parse(answer.out), (nlohmann::json{{"file", file},
                                                                 {"key", "(\\ba=)(\\d)()"},
                                                                 {"count", 1},
                                                                 {"matches",
                                                                  {{{"line", 1},
                                                                    {"column", 1},
                                                                    {"text", "a=1"},
                                                                    {"groups",
                                                                     {{{"line", 1}, {"column", 1}, {"text", "a="}},
                                                                      {{"line", 1}, {"column", 3}, {"text", "1"}},
                                                                      {{"line", 1}, {"column", 4}, {"text", ""}}}}}}},
                                                                 {"failure", nullptr},
                                                                 {"findings", nlohmann::json::array()}}));
}

TEST_F(KeyCommandTest, HelpHasExamples) {
    EXPECT_THAT(runCommand(addKeyCommand, {"key", "--help"}).out,
                ::testing::HasSubstr("Examples:\n  brisktitles key --file Settings.ini:12\n"));
}

} // namespace
} // namespace brisk::workbench
