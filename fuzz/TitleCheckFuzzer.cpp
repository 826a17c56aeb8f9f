#include "fuzz/Fuzzing.h"
#include "pattern/SettingPattern.h"
#include "tools/titles/DatabaseCheck.h"
#include "tools/titles/DatabaseTitles.h"
#include "tools/titles/FindingOutput.h"
#include "tools/titles/Rules.h"

#include <algorithm>
#include <sstream>

// The bytes of a title database, checked without a game.

namespace brisk::workbench {
namespace {

void checkFinding(const Finding& finding, std::size_t size) {
    const auto rules = allRules();
    fuzzing::require(std::find(rules.begin(), rules.end(), finding.rule) != rules.end(), "a rule that there is");
    // What is missing at the end is shown behind it.
    fuzzing::require(finding.begin <= finding.end && finding.begin <= size && finding.end <= size + 1,
                     "a place in the text");
    fuzzing::require(!finding.message.empty(), "a message");
}

// Whatever stands in the text, each way of printing ends.
void print(const SourceText& source, const Finding& finding) {
    std::ostringstream out;
    printFinding(out, source, finding, true);
    printGithubFinding(out, source, finding);
    out << toJson(source, finding).dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace)
        << toSarifResult(source, finding).dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
    fuzzing::require(!out.str().empty(), "a printed finding");
}

void compile(const std::string& key) {
    try {
        const SettingPattern pattern(key);
    } catch (const std::exception&) {
        fuzzing::fail("an error for a key that does not compile: " + key);
    }
}

// No error: the service starts with the database, and no key ends it.
void checkFaultless(const SourceText& source) {
    fuzzing::require(nlohmann::json::accept(source.text()), "an error for what is no JSON");
    try {
        for (const auto& [name, title] : readTitles(source, {})) {
            if (title.type == ConfigType::TextFile) {
                for (const auto& [key, field] : title.title.configFields) {
                    compile(key);
                }
                for (const PatchCondition& condition : title.title.patchConditions) {
                    compile(condition.key);
                }
            }
        }
    } catch (const nlohmann::json::exception&) {
        fuzzing::fail("an error for what ends the service");
    }
    fuzzing::takeLog();
}

void check(std::string bytes) {
    const SourceText source("titles_db.json", std::move(bytes));
    const DatabaseCheck checked = checkDatabase(source);
    std::size_t before = 0;
    bool hasError = false;
    for (const Finding& finding : checked.findings) {
        checkFinding(finding, source.text().size());
        fuzzing::require(before <= finding.begin, "the order of the places");
        before = finding.begin;
        hasError = hasError || finding.severity == Severity::Error;
        print(source, finding);
    }
    if (!hasError) {
        checkFaultless(source);
    }
}

} // namespace
} // namespace brisk::workbench

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    brisk::workbench::check(std::string(brisk::fuzzing::toText(data, size)));
    return 0;
}
