#include "tools/titles/CheckCommand.h"
#include "tools/titles/Commands.h"
#include "tools/titles/Rules.h"
#include "tools/titles/Suggestion.h"

#include <algorithm>
#include <memory>

namespace brisk::workbench {

namespace {

// Refuses a rule that there is not.
std::string checkRule(const std::string& rule) {
    const auto rules = allRules();
    return std::find(rules.begin(), rules.end(), rule) != rules.end()
               ? std::string()
               : "\"" + rule + "\" is no rule" + didYouMean(rule, rules);
}

} // namespace

void addCheckCommand(CLI::App& program, int& exitCode, bool hasColours) {
    const auto options = std::make_shared<CheckOptions>();
    CLI::App* command = program.add_subcommand("check", "what is wrong with a database, without a game");
    command->add_option("DATABASE", options->databases, "title databases")->required();
    command->add_option("--disable", options->disabledRules, "a rule that is not to be reported; may be repeated")
        ->type_name("RULE")
        ->expected(1)
        ->take_all()
        ->check(CLI::Validator(checkRule, ""));
    command->add_flag("--strict", options->isStrict, "warnings count: exit code 1");
    command->add_option("--format", options->format, "text, json, github or sarif")
        ->check(CLI::IsMember({"text", "json", "github", "sarif"}))
        ->capture_default_str();
    command->footer("Examples:\n"
                    "  brisktitles check titles_db.json\n"
                    "  brisktitles check --strict --disable no-condition titles_db.json\n"
                    "  brisktitles check --format sarif titles_db.json > titles.sarif\n"
                    "docs/title-rules.md explains every rule.");
    command->callback([options, &exitCode, hasColours] {
        options->hasColours = hasColours;
        exitCode = runCheck(*options);
    });
}

} // namespace brisk::workbench
