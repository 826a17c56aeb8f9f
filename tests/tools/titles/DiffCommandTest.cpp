#include "tools/titles/CommandFixture.h"
#include "tools/titles/CommandLine.h"
#include "tools/titles/Commands.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace brisk::workbench {
namespace {

class DiffCommandTest : public CommandFixture {
protected:
    Answer diff(const std::string& before, const std::string& after, const std::string& format = "text") const {
        return runCommand(addDiffCommand,
                          {"diff", write("old.json", before), write("new.json", after), "--format", format});
    }
};

constexpr char kHarbour[] = R"j({"config_type": "txt", "id": 1, "binary_name": "a.exe", "title_name": "Harbour",
  "config_locations": ["%APPDIR%\\a.ini"],
  "config_fields": [{"key": "(W=)(\\d+)()", "meta": "width", "value": 0}, {"key": "(M=)(\\w+)()", "value": "Low"}],
  "patch_if": [{"key": "(V=)(\\d+)()", "presence": [3]}]})j";

std::string listOf(const std::string& one, const std::string& other = "") {
    return "[" + one + (other.empty() ? "" : ",") + other + "]";
}

TEST_F(DiffCommandTest, LayoutOrderAndDefaultsMakeNoDifference) {
    const std::string other = R"({"config_type": "reg", "binary_name": "b.exe"})";
    EXPECT_EQ(diff(listOf(kHarbour, other),
                   listOf(R"({"luma_version": 0, "publisher": "", "binary_name": "b.exe", "patch_if": [],
                              "config_type": "reg"})",
                          kHarbour)),
              (Answer{0, "0 titles differ\n", ""}));
}

TEST_F(DiffCommandTest, EachChangeIsTold) {
    constexpr char kChanged[] = R"j({"config_type": "txt", "id": 2, "binary_name": "a.exe", "title_name": "Harbour",
      "config_locations": ["%APPDIR%\\b.ini"],
      "config_fields": [{"key": "(\\nW=)(\\d+)()", "meta": "width", "value": 0}, {"key": "(M=)(\\w+)()", "value": "High"},
                        {"key": "(N=)(\\d+)()", "value": 1}],
      "patch_if": [{"key": "(V=)(\\d+)()", "presence": [3], "absence": true}]})j";
    EXPECT_EQ(diff(listOf(kHarbour), listOf(kChanged)),
              (Answer{1,
                      "a.exe (Harbour): changed\n"
                      "  id\n"
                      "    - 1\n"
                      "    + 2\n"
                      "  config_locations\n"
                      "    - [\"%APPDIR%\\\\a.ini\"]\n"
                      "    + [\"%APPDIR%\\\\b.ini\"]\n"
                      "  value of \"(M=)(\\\\w+)()\"\n"
                      "    - \"Low\"\n"
                      "    + \"High\"\n"
                      "  key\n"
                      "    - \"(W=)(\\\\d+)()\"\n"
                      "    + \"(\\\\nW=)(\\\\d+)()\"\n"
                      "  field of \"(N=)(\\\\d+)()\": added {\"key\":\"(N=)(\\\\d+)()\",\"value\":1}\n"
                      "  patch_if\n"
                      "    - [{\"key\":\"(V=)(\\\\d+)()\",\"presence\":[3],\"absence\":false}]\n"
                      "    + [{\"key\":\"(V=)(\\\\d+)()\",\"presence\":[3],\"absence\":true}]\n"
                      "1 title differs\n",
                      ""}));
}

TEST_F(DiffCommandTest, TitlesAreAddedRemovedAndRenamed) {
    const std::string renamed = std::string(kHarbour).replace(std::string(kHarbour).find("a.exe"), 5, "c.exe");
    const std::string gone = R"({"config_type": "txt", "binary_name": "gone.exe", "title_name": "Gone"})";
    const std::string come = R"({"config_type": "txt", "binary_name": "come.exe"})";
    EXPECT_EQ(diff(listOf(kHarbour, gone), listOf(renamed, come)), (Answer{1,
                                                                           "c.exe (Harbour): renamed from a.exe\n"
                                                                           "come.exe: added\n"
                                                                           "gone.exe (Gone): removed\n"
                                                                           "3 titles differ\n",
                                                                           ""}));
    const Answer json = diff(listOf(kHarbour), listOf(renamed), "json");
    EXPECT_EQ(json.code, 1);
    EXPECT_EQ(nlohmann::json::parse(json.out), (nlohmann::json{{"titles",
                                                                {{{"title", "c.exe"},
                                                                  {"name", "Harbour"},
                                                                  {"change", "renamed"},
                                                                  {"earlier_title", "a.exe"},
                                                                  {"changes", nlohmann::json::array()}}}}}));
}

TEST_F(DiffCommandTest, WhatTheServiceSkipsCountsAsMissing) {
    const std::string skipped = std::string(kHarbour).replace(std::string(kHarbour).find("txt"), 3, "ini");
    EXPECT_EQ(diff(listOf(kHarbour, "1"), listOf(skipped)),
              (Answer{1, "a.exe (Harbour): removed\n1 title differs\n", ""}));
}

TEST_F(DiffCommandTest, WhatCannotBeReadIsSaid) {
    EXPECT_EQ(diff("[]", "[,]"), (Answer{2, "",
                                         "brisktitles: " + in("new.json") +
                                             " is no JSON; `brisktitles check` tells where it is wrong\n"}));
    EXPECT_EQ(runCommand(addDiffCommand, {"diff", "none", "none"}), (Answer{2, "", "brisktitles: cannot read none\n"}));
    EXPECT_EQ(runCommand(addDiffCommand, {"diff", "none"}).code, 2);
}

} // namespace
} // namespace brisk::workbench
