#include "tools/titles/GoldenTest.h"

#include "base/TextEncoding.h"
#include "tools/titles/PreviewFindings.h"

#include <algorithm>
#include <filesystem>

namespace brisk::workbench {

namespace {

// The rules that say why a title does not settle.
bool saysWhyNot(const PreviewFinding& finding) {
    return finding.finding.rule == "never-settles" || finding.finding.rule == "grows" ||
           finding.finding.rule == "adjusted-again" || finding.finding.rule == "nothing-matches";
}

// A case must settle, and without writing over what it wrote.
void checkThatItSettles(GoldenResult& result, const TitlePreview& preview) {
    std::string why;
    bool isAdjustedAgain = false;
    for (const PreviewFinding& each : findFaults(preview)) {
        if (saysWhyNot(each)) {
            isAdjustedAgain = isAdjustedAgain || each.finding.rule == "adjusted-again";
            why += std::string(why.empty() ? ": " : "; ") + each.finding.message;
        }
    }
    if (!preview.settles || isAdjustedAgain) {
        result.failures.push_back("does not settle" + why);
    }
}

void accept(const GoldenCase& golden, GoldenResult& result, const GoldenFiles& actual) {
    nlohmann::ordered_json description = golden.description;
    description["expectation"] = result.verdict;
    const std::string json = description.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
    const std::string after = golden.folder + "/after";
    std::error_code error;
    std::filesystem::remove_all(toPath(after), error);
    writeFiles(after, changedFiles(golden.before, actual));
    writeFiles(golden.folder, {{"case.json", json}});
    result.expectation = result.verdict;
    result.isAccepted = true;
}

void run(const SourceText& titleFile, const std::string& folder, const GoldenOptions& options, GoldenResult& result) {
    const GoldenCase golden = readCase(folder, options.accepts);
    result.expectation = golden.expectation;
    const TitlePreview preview = previewCase(titleFile, golden, golden.display);
    result.verdict = nameOf(preview.passes.front().verdict);
    const auto& all = expectations();
    const bool mayBeExpected = std::find(all.begin(), all.end(), result.verdict) != all.end();
    if (!mayBeExpected) {
        result.failures.push_back("the service's verdict is " + result.verdict + ": " + preview.passes.front().log);
    }
    checkThatItSettles(result, preview);
    const bool isSound = result.failures.empty();
    if (mayBeExpected && result.verdict != golden.expectation) {
        result.failures.push_back("expected " + (golden.expectation.empty() ? "nothing yet" : golden.expectation) +
                                  ", but it is " + result.verdict);
    }
    const GoldenFiles actual = filesAfter(golden, preview);
    result.diff = diffFiles(overlaid(golden.before, golden.after), actual);
    if (!result.diff.empty()) {
        result.failures.emplace_back("the files are not those of after/");
    }
    if (options.accepts && isSound && !result.failures.empty()) {
        accept(golden, result, actual);
        result.failures.clear();
    }
    if (options.service) {
        if (const std::optional<std::string> difference = options.service(titleFile, golden)) {
            result.failures.push_back(*difference);
        }
    }
}

} // namespace

std::vector<GoldenResult> runGoldenCases(const std::string& titleFolder, const GoldenOptions& options) {
    std::vector<GoldenResult> results;
    const auto attemptAs = [&](const std::string& name, const auto& work) {
        GoldenResult result;
        result.title = titleFolder;
        result.name = name;
        try {
            work(result);
        } catch (const std::exception& error) {
            result.failures.emplace_back(error.what());
            result.isUnreadable = true;
        }
        if (!name.empty() || result.isUnreadable) {
            results.push_back(std::move(result));
        }
    };
    attemptAs("", [&](GoldenResult&) {
        const SourceText titleFile = readTitleFile(titleFolder);
        for (const std::string& folder : findCases(titleFolder)) {
            attemptAs(folder.substr(folder.rfind('/') + 1),
                      [&](GoldenResult& result) { run(titleFile, folder, options, result); });
        }
    });
    return results;
}

} // namespace brisk::workbench
