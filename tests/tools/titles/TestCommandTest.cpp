// Golden cases: what passes, what does not, and what is written.
#include "tools/titles/TestCommand.h"

#include "CommandFixture.h"
#include "support/Places.h"

#include <nlohmann/json.hpp>

namespace brisk::workbench {
namespace {

constexpr char kTitle[] = R"j([{"config_type": "txt", "title_name": "Alpha", "binary_name": "alpha.exe",
  "config_locations": ["%LOCALAPPDATA%\\Alpha\\a.ini"],
  "config_fields": [{"key": "(\\nWidth=)(\\d+)()", "meta": "native_width", "value": 0}],
  "patch_if": [{"key": "(\\nVersion=)(\\d+)()", "presence": [3]}]}])j";
constexpr char kSettings[] = "before/profile/AppData/Local/Alpha/a.ini";

class TestCommandTest : public CommandFixture {
protected:
    TestCommandTest() {
        write("titles/Alpha/title.json", kTitle);
        options.folder = in("titles");
    }

    void writeCase(const std::string& name, const std::string& json, const std::string& settings) const {
        write("titles/Alpha/" + name + "/case.json", json);
        write("titles/Alpha/" + name + "/" + kSettings, settings);
    }

    int run() {
        return capture([this] { return runTest(options); });
    }

    TestOptions options;
};

TEST_F(TestCommandTest, ExamplesAreAsTheyAreExpected) {
    options.folder = testing::place(BRISK_EXAMPLES).string();
    EXPECT_EQ(run(), 0) << printed << complaint;
    EXPECT_THAT(printed, ::testing::EndsWith("5 titles, 23 cases, 0 failures\n"));
}

TEST_F(TestCommandTest, EachVerdictIsExpectedAsItIs) {
    writeCase("changes", R"j({"display": "2560x1440", "expectation": "adjusted"})j", "[A]\r\nVersion=3\r\nWidth=1\r\n");
    write("titles/Alpha/changes/after/profile/AppData/Local/Alpha/a.ini", "[A]\r\nVersion=3\r\nWidth=2560\r\n");
    writeCase("other", R"j({"expectation": "condition"})j", "[A]\r\nVersion=2\r\nWidth=1\r\n");
    writeCase("right", R"j({"expectation": "untouched"})j", "[A]\r\nVersion=3\r\nWidth=1920\r\n");
    write("titles/Alpha/nowhere/case.json", R"j({"expectation": "not-found"})j");
    writeCase("small", R"j({"lower": "none", "expectation": "no-resolution"})j", "[A]\r\nVersion=3\r\nWidth=1\r\n");
    EXPECT_EQ(run(), 0) << complaint;
    EXPECT_EQ(printed, "ok    Alpha/changes: adjusted\n"
                       "ok    Alpha/nowhere: not-found\n"
                       "ok    Alpha/other: condition\n"
                       "ok    Alpha/right: untouched\n"
                       "ok    Alpha/small: no-resolution\n"
                       "1 title, 5 cases, 0 failures\n");
}

TEST_F(TestCommandTest, CaseThatIsAdjustedTwiceIsNeverAccepted) {
    write("titles/Alpha/title.json", R"j([{"config_type": "txt", "title_name": "Alpha", "binary_name": "alpha.exe",
  "config_locations": ["%LOCALAPPDATA%\\Alpha\\a.ini"],
  "config_fields": [{"key": "(\\nMode=)([^\\n]*)()", "value": "Q", "create_key": "(\\n\\[V\\]\\n)()()",
                     "create_value": "Mode=*"}]}])j");
    write("titles/Alpha/one/" + std::string(kSettings), "[A]\r\n[V]\r\nWidth=3\r\n");
    options.accepts = true;
    EXPECT_EQ(run(), 1);
    EXPECT_THAT(printed, ::testing::HasSubstr("does not settle: what is written is not what is read, and the next "
                                              "adjustment writes over it"));
    EXPECT_THAT(std::filesystem::exists(folder / "titles/Alpha/one/after"), false);
}

TEST_F(TestCommandTest, AnotherVerdictAndOtherBytesAreFailures) {
    writeCase("one", R"j({"expectation": "untouched"})j", "[A]\r\nVersion=3\r\nWidth=1\r\n");
    EXPECT_EQ(run(), 1);
    EXPECT_EQ(printed, "FAIL  Alpha/one: adjusted\n"
                       "      expected untouched, but it is adjusted\n"
                       "      the files are not those of after/\n"
                       "      --- expected/profile/AppData/Local/Alpha/a.ini\n"
                       "      +++ actual/profile/AppData/Local/Alpha/a.ini\n"
                       "      @@ -1,3 +1,3 @@\n"
                       "       [A]\n"
                       "       Version=3\n"
                       "      -Width=1\n"
                       "      +Width=1920\n"
                       "1 title, 1 case, 1 failure\n");
}

TEST_F(TestCommandTest, LineEndsCountThoughADiffLeavesThemOut) {
    writeCase("one", R"j({"expectation": "adjusted"})j", "[A]\nVersion=3\nWidth=1\n");
    write("titles/Alpha/one/after/profile/AppData/Local/Alpha/a.ini", "[A]\nVersion=3\nWidth=1920\n");
    EXPECT_EQ(run(), 1);
    EXPECT_THAT(printed, ::testing::HasSubstr("\n      the files differ in their line ends alone\n"));
}

TEST_F(TestCommandTest, AcceptWritesWhatComesOutAndShowsIt) {
    write("titles/Alpha/one/case.json", "{\"note\": \"kept\"}");
    write(std::string("titles/Alpha/one/") + kSettings, "[A]\r\nVersion=3\r\nWidth=1\r\n");
    write("titles/Alpha/one/after/old.ini", "gone");
    options.accepts = true;
    EXPECT_EQ(run(), 0) << complaint;
    EXPECT_THAT(printed, ::testing::HasSubstr("new   Alpha/one: adjusted\n"));
    EXPECT_THAT(printed, ::testing::HasSubstr("\n      +Width=1920\n"));
    EXPECT_EQ(read("titles/Alpha/one/case.json"), "{\n  \"note\": \"kept\",\n  \"expectation\": \"adjusted\"\n}\n");
    EXPECT_EQ(read("titles/Alpha/one/after/profile/AppData/Local/Alpha/a.ini"), "[A]\r\nVersion=3\r\nWidth=1920\r\n");
    EXPECT_FALSE(std::filesystem::exists(folder / "titles/Alpha/one/after/old.ini"));
    options.accepts = false;
    EXPECT_EQ(run(), 0) << printed;
}

TEST_F(TestCommandTest, WhatDoesNotSettleIsNeverAccepted) {
    write("titles/Alpha/title.json", R"j([{"config_type": "txt", "binary_name": "alpha.exe",
      "config_locations": ["%LOCALAPPDATA%\\Alpha\\a.ini"],
      "config_fields": [{"key": "(\\nHeight=)(\\d+)()", "value": 1}, {"key": "(\\nWidth=)(\\d+)()", "value": 1}]}])j");
    writeCase("one", R"j({"expectation": "adjusted"})j", "[A]\r\nWidth=1280\r\n");
    options.accepts = true;
    EXPECT_EQ(run(), 1);
    EXPECT_THAT(printed, ::testing::HasSubstr("      does not settle: the setting is missing, and there is no "
                                              "\"create_key\""));
    EXPECT_FALSE(std::filesystem::exists(folder / "titles/Alpha/one/after"));
}

TEST_F(TestCommandTest, RegistryBeforeAndAfterAreExports) {
    write("titles/Beta/title.json", R"j({"config_type": "reg", "binary_name": "beta.exe",
      "config_locations": ["HKEY_CURRENT_USER/Software/Beta"], "config_fields": [{"key": "Width", "meta": "width", "value": 0}]})j");
    write("titles/Beta/one/case.json", R"j({"expectation": "adjusted"})j");
    write("titles/Beta/one/before/registry.reg",
          "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\Beta]\n\"Width\"=dword:00000001\n"
          "\"Name\"=\"a\"\n");
    options.folder = in("titles/Beta");
    EXPECT_EQ(run(), 1);
    EXPECT_THAT(printed, ::testing::HasSubstr("      -\"Width\"=dword:00000001\n      +\"Width\"=dword:00000640\n"));
    options.accepts = true;
    EXPECT_EQ(run(), 0) << complaint;
    EXPECT_EQ(read("titles/Beta/one/after/registry.reg"),
              "Windows Registry Editor Version 5.00\r\n\r\n[HKEY_CURRENT_USER\\Software\\Beta]\r\n\"Name\"=\"a\"\r\n"
              "\"Width\"=dword:00000640\r\n");
    options.accepts = false;
    EXPECT_EQ(run(), 0) << printed;
}

TEST_F(TestCommandTest, JsonAndJunitHoldTheSame) {
    writeCase("one", R"j({"expectation": "untouched"})j", "[A]\r\nVersion=3\r\nWidth=1920\r\n");
    writeCase("two", R"j({"expectation": "untouched"})j", "[A]\r\nVersion=2\r\nWidth=1\r\n");
    options.format = "json";
    options.junit = in("results.xml");
    EXPECT_EQ(run(), 1);
    const auto json = nlohmann::json::parse(printed);
    EXPECT_EQ(json["cases"][0], nlohmann::json({{"title", in("titles/Alpha")},
                                                {"case", "one"},
                                                {"expectation", "untouched"},
                                                {"verdict", "untouched"},
                                                {"passed", true},
                                                {"accepted", false},
                                                {"failures", nlohmann::json::array()},
                                                {"diff", ""}}));
    EXPECT_EQ(json["failed"], 1);
    EXPECT_EQ(read("results.xml"),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<testsuites>\n"
              "  <testsuite name=\"Alpha\" tests=\"2\" failures=\"1\">\n"
              "    <testcase classname=\"Alpha\" name=\"one\"/>\n"
              "    <testcase classname=\"Alpha\" name=\"two\"><failure message=\"expected untouched, but it is "
              "condition\"></failure></testcase>\n"
              "  </testsuite>\n"
              "</testsuites>\n");
}

TEST_F(TestCommandTest, WhatCannotBeReadEndsWith2) {
    options.folder = in("missing");
    EXPECT_EQ(run(), 2);
    EXPECT_EQ(complaint, "brisktitles: " + in("missing") + " is no folder\n");
    options.folder = in("titles");
    write("titles/Alpha/one/case.json", R"j({"expectations": "adjusted"})j");
    EXPECT_EQ(run(), 2);
    EXPECT_THAT(printed,
                ::testing::HasSubstr("one/case.json: unknown key \"expectations\"; did you mean \"expectation\"?\n"));
    write("titles/Alpha/one/case.json", R"j({"expectation": "not-found"})j");
    write("titles/Alpha/title.json", "[{]");
    EXPECT_EQ(run(), 2);
    EXPECT_THAT(complaint, ::testing::HasSubstr("error[json-syntax]"));
}

} // namespace
} // namespace brisk::workbench
