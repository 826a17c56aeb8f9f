// Every section of docs/title-rules.md: its wrong example breaks its rule, its right one breaks none.
#include "tools/titles/DatabaseCheck.h"
#include "tools/titles/Rules.h"

#include "support/Places.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace brisk::workbench {
namespace {

struct Example {
    std::string kind; // file, title, setting or condition; "file latin-1" for another encoding
    std::string json;
};

struct Section {
    std::string rule;
    std::vector<Example> wrong;
    std::vector<Example> right;
};

std::vector<Section> readPage() {
    std::ifstream file(testing::place(BRISK_TITLE_RULES));
    std::vector<Section> sections;
    bool isWrong = false;
    Example* open = nullptr;
    for (std::string line; std::getline(file, line);) {
        if (line.ends_with('\r')) {
            line.pop_back();
        }
        if (open) {
            if (line == "```") {
                open = nullptr;
            } else {
                open->json += line + '\n';
            }
        } else if (line.starts_with("## ")) {
            sections.push_back({line.substr(3), {}, {}});
        } else if (line == "Wrong:" || line == "Right:") {
            isWrong = line == "Wrong:";
        } else if (line.starts_with("```json ")) {
            open = &(isWrong ? sections.back().wrong : sections.back().right).emplace_back(Example{line.substr(8), {}});
        }
    }
    return sections;
}

// A whole title that is right but for the member, which is put in as it is written.
std::string titleWith(const std::string& member, const std::string& json) {
    const nlohmann::ordered_json title{{"id", 1001},
                                       {"config_type", "txt"},
                                       {"title_name", "Starlit Harbour"},
                                       {"publisher", "Brackwater Games"},
                                       {"binary_name", "StarlitHarbour.exe"},
                                       {"config_locations", {"%LOCALAPPDATA%\\Starlit Harbour\\Settings.ini"}},
                                       {"config_fields", {{{"key", "(\\nMode=)([^\\n]*)()"}, {"value", "Quality"}}}},
                                       {"patch_if", {{{"key", "(\\nVersion=)(\\d+)()"}, {"presence", {3}}}}}};
    std::string file = "[{";
    for (const auto& [key, value] : title.items()) {
        file += '"' + key + "\": " + (key == member ? json : value.dump()) + ", ";
    }
    return file.substr(0, file.size() - 2) + "}]";
}

// The same with the example's members.
std::string titleWithAll(const std::string& json) {
    nlohmann::ordered_json title = nlohmann::ordered_json::parse(titleWith({}, {}))[0];
    title.update(nlohmann::ordered_json::parse(json));
    if (title["config_type"] == "reg") {
        title["patch_if"][0]["key"] = "Version";
    }
    return nlohmann::ordered_json::array({title}).dump();
}

std::string fileOf(const Example& example) {
    if (example.kind == "file") {
        return example.json;
    }
    if (example.kind == "file latin-1") {
        std::string bytes;
        for (std::size_t at = 0; at < example.json.size(); ++at) {
            const auto byte = static_cast<unsigned char>(example.json[at]);
            bytes +=
                byte < 0x80
                    ? static_cast<char>(byte)
                    : static_cast<char>(((byte & 3U) << 6U) | (static_cast<unsigned char>(example.json[++at]) & 0x3FU));
        }
        return bytes;
    }
    if (example.kind == "setting") {
        return titleWith("config_fields", "[" + example.json + "]");
    }
    if (example.kind == "condition") {
        return titleWith("patch_if", "[" + example.json + "]");
    }
    EXPECT_EQ(example.kind, "title");
    return titleWithAll(example.json);
}

std::multiset<std::string> rulesBrokenBy(const Example& example) {
    std::multiset<std::string> rules;
    for (const Finding& finding : checkDatabase(SourceText("titles_db.json", fileOf(example))).findings) {
        rules.insert(finding.rule);
    }
    return rules;
}

TEST(RulesPage, HasASectionForEveryRuleInTheirOrder) {
    std::vector<std::string_view> rules;
    const std::vector<Section> sections = readPage();
    for (const Section& section : sections) {
        rules.push_back(section.rule);
    }
    std::vector<std::string_view> expected(allRules().begin(), allRules().end());
    expected.insert(expected.end(), previewRules().begin(), previewRules().end());
    EXPECT_THAT(rules, ::testing::ElementsAreArray(expected));
}

class RulesPageTest : public ::testing::TestWithParam<Section> {};

TEST_P(RulesPageTest, WrongExamplesBreakTheRuleAndRightOnesBreakNone) {
    const Section& section = GetParam();
    EXPECT_FALSE(section.wrong.empty());
    EXPECT_FALSE(section.right.empty());
    for (const Example& example : section.wrong) {
        EXPECT_THAT(rulesBrokenBy(example), ::testing::Contains(section.rule)) << fileOf(example);
    }
    for (const Example& example : section.right) {
        EXPECT_THAT(rulesBrokenBy(example), ::testing::IsEmpty()) << fileOf(example);
    }
}

std::string nameOfSection(const ::testing::TestParamInfo<Section>& info) {
    return std::regex_replace(info.param.rule, std::regex("[^a-z0-9]"), "_");
}

// PreviewPageTest has the page's second part.
std::vector<Section> sectionsOfCheck() {
    std::vector<Section> sections = readPage();
    std::erase_if(sections, [](const Section& section) {
        return std::find(previewRules().begin(), previewRules().end(), section.rule) != previewRules().end();
    });
    return sections;
}

INSTANTIATE_TEST_SUITE_P(Page, RulesPageTest, ::testing::ValuesIn(sectionsOfCheck()), nameOfSection);

} // namespace
} // namespace brisk::workbench
