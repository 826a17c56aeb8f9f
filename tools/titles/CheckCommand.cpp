#include "tools/titles/CheckCommand.h"

#include "tools/console/Files.h"
#include "tools/console/Words.h"
#include "tools/titles/DatabaseCheck.h"
#include "tools/titles/FindingOutput.h"
#include "tools/titles/Progress.h"

#include "base/Version.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <optional>
#include <set>
#include <utility>

namespace brisk::workbench {

namespace {

// Gathers what the databases gave, in the format asked for.
class Output {
public:
    explicit Output(const CheckOptions& given) : options(given) {}

    void add(const SourceText& source, const DatabaseCheck& check) {
        titles += check.titles;
        for (const Finding& finding : check.findings) {
            if (std::find(options.disabledRules.begin(), options.disabledRules.end(), finding.rule) !=
                options.disabledRules.end()) {
                continue;
            }
            ++counts[static_cast<std::size_t>(finding.severity)];
            if (options.format == "json") {
                findings.push_back(toJson(source, finding));
            } else if (options.format == "sarif") {
                findings.push_back(toSarifResult(source, finding));
                rules.insert(finding.rule);
            } else if (options.format == "github") {
                printGithubFinding(std::cout, source, finding);
            } else {
                printFinding(std::cout, source, finding, options.hasColours);
            }
        }
    }

    void finish() const {
        if (options.format == "json") {
            const nlohmann::ordered_json document{
                {"findings", findings}, {"errors", counts[0]}, {"warnings", counts[1]}, {"titles", titles}};
            std::cout << document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
        } else if (options.format == "sarif") {
            printSarif();
        } else {
            std::cout << counted(counts[0], "error") << ", " << counted(counts[1], "warning") << ", "
                      << counted(titles, "title") << '\n';
        }
    }

    bool complains() const { return counts[0] > 0 || (options.isStrict && counts[1] > 0); }

private:
    void printSarif() const {
        nlohmann::ordered_json ruleList = nlohmann::ordered_json::array();
        for (const std::string& rule : rules) {
            ruleList.push_back({{"id", rule}});
        }
        nlohmann::ordered_json run;
        run["tool"]["driver"] = {{"name", "brisktitles"}, {"version", kVersion}, {"rules", ruleList}};
        run["columnKind"] = "unicodeCodePoints";
        run["results"] = findings;
        nlohmann::ordered_json document;
        document["$schema"] = "https://json.schemastore.org/sarif-2.1.0.json";
        document["version"] = "2.1.0";
        document["runs"] = nlohmann::ordered_json::array({run});
        std::cout << document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
    }

    const CheckOptions& options;
    nlohmann::ordered_json findings = nlohmann::ordered_json::array();
    std::set<std::string> rules;
    std::array<std::size_t, 3> counts{}; // by severity
    std::size_t titles = 0;
};

} // namespace

int runCheck(const CheckOptions& options) {
    Output output(options);
    bool isReadable = true;
    for (const std::string& path : options.databases) {
        std::optional<std::string> bytes = readFile(path);
        if (!bytes) {
            std::cerr << "brisktitles: cannot read " << path << '\n';
            isReadable = false;
            continue;
        }
        const SourceText source(path, std::move(*bytes));
        Progress progress(source.text().size());
        output.add(source, checkDatabase(source, [&progress](std::size_t done) { progress.advanceTo(done); }));
    }
    output.finish();
    if (!isReadable) {
        return 2;
    }
    return output.complains() ? 1 : 0;
}

} // namespace brisk::workbench
