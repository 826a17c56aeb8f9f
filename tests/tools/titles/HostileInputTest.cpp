// Huge, deep and hopeless input ends in findings, in the time that its size asks for.
#include "tools/titles/DatabaseCheck.h"
#include "tools/titles/DatabaseTitles.h"
#include "tools/titles/FindingOutput.h"
#include "tools/titles/PreviewFindings.h"
#include "tools/titles/ProfileFiles.h"

#include <set>
#include <sstream>
#include <string>

#include <gmock/gmock.h>

namespace brisk::workbench {
namespace {

constexpr std::size_t kHuge = 100'000'000;

std::set<std::string> rulesOf(const std::string& database) {
    std::set<std::string> rules;
    for (const Finding& finding : checkDatabase(SourceText("titles_db.json", database)).findings) {
        rules.insert(finding.rule);
    }
    return rules;
}

std::string titleWith(const std::string& key) {
    return R"j([{"id": 1, "config_type": "txt", "title_name": "A", "publisher": "A", "binary_name": "game.exe",
                 "config_locations": ["%APPDIR%\\game.ini"],
                 "patch_if": [{"key": "(\\nV=)(\\d+)()", "presence": [1]}],
                 "config_fields": [{"key": ")j" +
           key + R"j(", "value": "x"}]}])j";
}

TitlePreview preview(const std::string& key, const std::string& text) {
    TextPreviewAdapter adapter(readTitles(SourceText("titles_db.json", titleWith(key)), {}).at("game.exe").title);
    adapter.patchConditions.clear();
    adapter.configLocations = {"game.ini"};
    adapter.source = fileAt("game.ini", text);
    return previewText(adapter, {}, displayOf({1920, 1080}));
}

std::set<std::string> rulesOf(const TitlePreview& preview) {
    std::set<std::string> rules;
    for (const PreviewFinding& each : findFaults(preview)) {
        rules.insert(each.finding.rule);
    }
    return rules;
}

TEST(HostileInput, DatabaseThatNestsWithoutEndIsASyntaxError) {
    EXPECT_THAT(rulesOf(std::string(kHuge, '[')), ::testing::Contains("json-syntax"));
}

TEST(HostileInput, DatabaseThatIsOneHugeTextHasNoFurtherFault) {
    std::string database = titleWith("(\\\\nW=)(\\\\w+)()");
    database.insert(database.find("\"A\"") + 2, std::string(kHuge, 'a'));
    EXPECT_THAT(rulesOf(database), ::testing::IsEmpty());
}

// What is said costs no more in one line than in many.
TEST(HostileInput, DatabaseInOneLineIsPrintedInTime) {
    std::string database = "[";
    for (int title = 0; title < 20'000; ++title) {
        database += (title > 0 ? R"(,{"unknown)" : R"({"unknown)") + std::to_string(title) +
                    R"(":"and a text of some length"})";
    }
    const SourceText source("titles_db.json", database + "]");
    std::size_t size = 0;
    for (const Finding& finding : checkDatabase(source).findings) {
        std::ostringstream out;
        printFinding(out, source, finding, false);
        size += out.str().size();
    }
    EXPECT_GT(size, 20'000'000U);
}

TEST(HostileInput, HopelessPatternIsCalledOne) {
    EXPECT_THAT(rulesOf(titleWith("((a*)*b)(x)()")), ::testing::Contains("pattern-cost"));
}

TEST(HostileInput, HopelessPatternIsGivenUpInAPreview) {
    EXPECT_THAT(rulesOf(preview("(x)((a|a)*b)()", "x" + std::string(100'000, 'a'))),
                ::testing::Contains("pattern-gives-up"));
}

TEST(HostileInput, HugeFileIsPreviewedAndADifferenceIsShown) {
    std::string text = "[A]\r\nW=y\r\n";
    text.reserve(kHuge);
    while (text.size() < kHuge / 4) {
        text += "Name" + std::to_string(text.size()) + "=a value that is as long as others\r\n";
    }
    const TitlePreview result = preview("(\\\\nW=)(\\\\w+)()", text);
    EXPECT_EQ(result.passes.front().verdict, Verdict::Adjusted);
    EXPECT_THAT(result.passes.front().diff, ::testing::HasSubstr("-W=y\n+W=x\n"));
    EXPECT_TRUE(result.settles);
}

} // namespace
} // namespace brisk::workbench
