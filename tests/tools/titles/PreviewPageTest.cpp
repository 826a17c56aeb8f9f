// The second part of docs/title-rules.md: a preview of each section's wrong example finds its rule, that of its right
// one nothing.
#include "support/Places.h"
#include "tools/titles/DatabaseTitles.h"
#include "tools/titles/PreviewFindings.h"
#include "tools/titles/ProfileFiles.h"
#include "tools/titles/Rules.h"

#include <algorithm>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace brisk::workbench {
namespace {

struct Example {
    std::string encoding; // "" or "utf-16"
    std::string file;
    std::string fields;
};

struct Section {
    std::string rule;
    Example wrong;
    Example right;
};

void PrintTo(const Section& section, std::ostream* out) {
    *out << section.rule;
}

std::vector<Section> readPage() {
    std::ifstream page(testing::place(BRISK_TITLE_RULES));
    std::vector<Section> sections;
    Example* example = nullptr;
    std::string* open = nullptr;
    for (std::string line; std::getline(page, line);) {
        if (line.ends_with('\r')) {
            line.pop_back();
        }
        if (line.starts_with("## ")) {
            sections.push_back({line.substr(3), {}, {}});
        } else if (line == "Wrong:" || line == "Right:") {
            example = line == "Wrong:" ? &sections.back().wrong : &sections.back().right;
        } else if (example && (line == "```ini" || line == "```ini utf-16")) {
            example->encoding = line == "```ini" ? "" : "utf-16";
            open = &example->file;
        } else if (example && line == "```json setting") {
            open = &example->fields;
        } else if (line == "```") {
            open = nullptr;
        } else if (open) {
            *open += line + '\n';
        }
    }
    std::erase_if(sections, [](const Section& section) {
        return std::find(previewRules().begin(), previewRules().end(), section.rule) == previewRules().end();
    });
    return sections;
}

std::string bytesOf(const Example& example) {
    if (example.encoding.empty()) {
        return example.file;
    }
    std::string bytes = "\xFF\xFE";
    for (const char byte : example.file) {
        bytes += {byte, '\0'};
    }
    return bytes;
}

std::set<std::string> rulesBrokenBy(const Example& example) {
    const std::string database = R"([{"config_type": "txt", "binary_name": "game.exe", "config_locations": ["game.ini"],
                                      "config_fields": [)" +
                                 example.fields + "]}]";
    TextPreviewAdapter adapter(readTitles(SourceText("titles_db.json", database), {}).at("game.exe").title);
    adapter.source = fileAt("game.ini", bytesOf(example));
    std::set<std::string> rules;
    for (const PreviewFinding& each : findFaults(previewText(adapter, {}, displayOf({1920, 1080})))) {
        rules.insert(each.finding.rule);
    }
    return rules;
}

class PreviewPageTest : public ::testing::TestWithParam<Section> {};

TEST_P(PreviewPageTest, WrongExampleIsFoundAndRightOneIsNot) {
    const Section& section = GetParam();
    ASSERT_FALSE(section.wrong.fields.empty());
    ASSERT_FALSE(section.right.fields.empty());
    EXPECT_THAT(rulesBrokenBy(section.wrong), ::testing::Contains(section.rule));
    EXPECT_THAT(rulesBrokenBy(section.right), ::testing::IsEmpty());
}

std::string nameOfSection(const ::testing::TestParamInfo<Section>& info) {
    std::string name = info.param.rule;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Page, PreviewPageTest, ::testing::ValuesIn(readPage()), nameOfSection);

} // namespace
} // namespace brisk::workbench
