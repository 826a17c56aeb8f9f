#include "support/Places.h"
#include "tools/titles/CommandFixture.h"
#include "tools/titles/CommandLine.h"
#include "tools/titles/Commands.h"

#include <map>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace brisk::workbench {
namespace {

namespace fs = std::filesystem;

std::string titleOf(const std::string& name, int id) {
    return R"({"id": )" + std::to_string(id) + R"(, "config_type": "reg", "title_name": "Game", "publisher": "P",
  "binary_name": ")" +
           name + R"(", "config_locations": ["HKEY_CURRENT_USER/Software/P"],
  "config_fields": [{"key": "W", "meta": "width", "value": 0}]})";
}

class BuildCommandTest : public CommandFixture {
protected:
    static void addBuild(CLI::App& program, int& exitCode) { addBuildCommand(program, exitCode, false); }
    Answer build(const std::string& format = "text") const {
        return runCommand(addBuild, {"build", in("titles"), "-o", in("db.json"), "--format", format});
    }
};

TEST_F(BuildCommandTest, TitlesAreMergedByTheirBinaryNames) {
    write("titles/1/title.json", titleOf("b.exe", 2));
    write("titles/2/title.json", "\xEF\xBB\xBF[\r\n" + titleOf("a.exe", 1) + "]\r\n");
    EXPECT_EQ(build(),
              (Answer{0, "0 errors, 0 warnings, 0 failures, 2 titles: written to " + in("db.json") + "\n", ""}));
    const std::string database = read("db.json");
    EXPECT_EQ(database, "[\n"
                        "  {\n"
                        "    \"id\": 1,\n"
                        "    \"config_type\": \"reg\",\n"
                        "    \"title_name\": \"Game\",\n"
                        "    \"publisher\": \"P\",\n"
                        "    \"binary_name\": \"a.exe\",\n"
                        "    \"config_locations\": [ \"HKEY_CURRENT_USER/Software/P\" ],\n"
                        "    \"config_fields\": [ { \"key\": \"W\", \"meta\": \"width\", \"value\": 0 } ]\n"
                        "  },\n"
                        "  {\n"
                        "    \"id\": 2,\n"
                        "    \"config_type\": \"reg\",\n"
                        "    \"title_name\": \"Game\",\n"
                        "    \"publisher\": \"P\",\n"
                        "    \"binary_name\": \"b.exe\",\n"
                        "    \"config_locations\": [ \"HKEY_CURRENT_USER/Software/P\" ],\n"
                        "    \"config_fields\": [ { \"key\": \"W\", \"meta\": \"width\", \"value\": 0 } ]\n"
                        "  }\n"
                        "]\n");
    // Other folders, another order: the same bytes.
    fs::rename(folder / "titles/1", folder / "titles/3");
    EXPECT_EQ(build().code, 0);
    EXPECT_EQ(read("db.json"), database);
}

TEST_F(BuildCommandTest, TwoTitlesOfOneNameAreRefusedAndNothingIsWritten) {
    write("titles/1/title.json", titleOf("a.exe", 1));
    write("titles/2/title.json", titleOf("a.exe", 2));
    EXPECT_EQ(build(), (Answer{1,
                               in("titles/2/title.json") + ":2:3: error[duplicate-binary-name]: the title in " +
                                   in("titles/1/title.json") +
                                   " has the same \"binary_name\"\n"
                                   "      \"binary_name\": \"a.exe\", \"config_locations\": "
                                   "[\"HKEY_CURRENT_USER/Software/P\"],\n"
                                   "      ^\n"
                                   "1 error, 0 warnings, 0 failures, 2 titles: nothing is written\n",
                               ""}));
    EXPECT_FALSE(fs::exists(folder / "db.json"));
}

TEST_F(BuildCommandTest, ErrorsStandAtTheirPlaceInTheTitlesFile) {
    write("titles/1/title.json", "{\"di\": 1}\n");
    const Answer answer = build("json");
    EXPECT_EQ(answer.code, 1);
    const auto json = nlohmann::json::parse(answer.out);
    EXPECT_EQ(json["output"], nullptr);
    std::vector<std::string> places;
    for (const auto& finding : json["findings"]) {
        if (finding["rule"] == "unknown-key") {
            places.push_back(finding["file"].get<std::string>() + ':' + finding["line"].dump() + ':' +
                             finding["column"].dump());
        }
    }
    EXPECT_THAT(places, ::testing::ElementsAre(in("titles/1/title.json") + ":1:2"));
    EXPECT_FALSE(fs::exists(folder / "db.json"));
}

TEST_F(BuildCommandTest, CaseThatFailsKeepsTheDatabaseFromBeingWritten) {
    write("titles/1/title.json", titleOf("a.exe", 1));
    write("titles/1/gone/case.json", R"({"expectation": "adjusted"})");
    const Answer answer = build();
    EXPECT_EQ(answer.code, 1);
    EXPECT_THAT(answer.out, ::testing::EndsWith("0 errors, 0 warnings, 1 failure, 1 title: nothing is written\n"));
    EXPECT_FALSE(fs::exists(folder / "db.json"));
}

TEST_F(BuildCommandTest, TitlesAreNeverOverwritten) {
    write("titles/1/title.json", titleOf("a.exe", 1));
    const std::string before = read("titles/1/title.json");
    fs::create_hard_link(folder / "titles/1/title.json", folder / "link.json");
    for (const std::string& output :
         {in("titles/1/title.json"), in("titles/../titles/1/./title.json"), in("titles/2/title.json")}) {
        EXPECT_EQ(runCommand(addBuild, {"build", in("titles"), "-o", output}),
                  (Answer{2, "",
                          "brisktitles: " + output +
                              " is the name of a title's own file; the database needs another one\n"}));
    }
    EXPECT_EQ(
        runCommand(addBuild, {"build", in("titles"), "-o", in("link.json")}),
        (Answer{2, "",
                "brisktitles: " + in("link.json") + " is " + in("titles/1/title.json") + ", which would be lost\n"}));
    EXPECT_EQ(read("titles/1/title.json"), before);
}

TEST_F(BuildCommandTest, ExamplesAreTheDatabaseOfTheExamples) {
    const fs::path examples = testing::place(BRISK_EXAMPLES);
    EXPECT_EQ(runCommand(addBuild, {"build", examples.generic_string(), "-o", in("titles_db.json")}).code, 0);
    std::map<std::string, nlohmann::json> built;
    std::map<std::string, nlohmann::json> written;
    for (const auto& title : nlohmann::json::parse(read("titles_db.json"))) {
        built[title.at("binary_name")] = title;
    }
    for (const auto& title : nlohmann::json::parse(testing::readFile(examples / "titles_db.json"))) {
        written[title.at("binary_name")] = title;
    }
    EXPECT_EQ(built, written);
}

TEST_F(BuildCommandTest, WhatCannotBeReadIsSaid) {
    EXPECT_EQ(build(), (Answer{2, "", "brisktitles: " + in("titles") + " is no folder\n"}));
    write("titles/other.json", "{}");
    EXPECT_EQ(build(), (Answer{2, "", "brisktitles: no folder below " + in("titles") + " holds a title.json\n"}));
    EXPECT_EQ(runCommand(addBuild, {"build", "x"}).code, 2);
}

} // namespace
} // namespace brisk::workbench
