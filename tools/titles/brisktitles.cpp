// brisktitles: the workbench of those who write title databases.
#include "tools/console/Console.h"
#include "tools/titles/CheckCommand.h"
#include "tools/titles/Commands.h"
#include "tools/titles/Rules.h"
#include "tools/titles/Suggestion.h"

#include "base/Version.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <iostream>

#include <CLI/CLI.hpp>

namespace {

using namespace brisk::workbench;

constexpr int kWrongUsage = 2;

bool wantsColours(const brisk::Console& console) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): there is one thread.
    const char* noColour = std::getenv("NO_COLOR");
    return console.takesColours() && (noColour == nullptr || *noColour == '\0');
}

// Refuses a rule that there is not.
std::string checkRule(const std::string& rule) {
    const auto rules = allRules();
    return std::find(rules.begin(), rules.end(), rule) != rules.end()
               ? std::string()
               : "\"" + rule + "\" is no rule" + didYouMean(rule, rules);
}

int run(int argc, char** argv, const brisk::Console& console) {
    CLI::App app("Finds what is wrong with a title database before a player does.", "brisktitles");
    app.set_version_flag("--version", std::string("brisktitles ") + brisk::kVersion);
    app.require_subcommand(1);
    app.footer("Exit codes: 0 nothing to complain of, 1 findings or differences, 2 wrong usage or unreadable input.");

    CheckOptions check;
    CLI::App* checkCommand = app.add_subcommand("check", "what is wrong with a database, without a game");
    checkCommand->add_option("DATABASE", check.databases, "title databases")->required();
    checkCommand->add_option("--disable", check.disabledRules, "a rule that is not to be reported; may be repeated")
        ->type_name("RULE")
        ->expected(1)
        ->take_all()
        ->check(CLI::Validator(checkRule, ""));
    checkCommand->add_flag("--strict", check.isStrict, "warnings count: exit code 1");
    checkCommand->add_option("--format", check.format, "text, json, github or sarif")
        ->check(CLI::IsMember({"text", "json", "github", "sarif"}))
        ->capture_default_str();
    checkCommand->footer("Examples:\n"
                         "  brisktitles check titles_db.json\n"
                         "  brisktitles check --strict --disable no-condition titles_db.json\n"
                         "  brisktitles check --format sarif titles_db.json > titles.sarif\n"
                         "docs/title-rules.md explains every rule.");

    int exitCode = 0;
    addSchemaCommand(app, exitCode);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : kWrongUsage;
    }
    if (!checkCommand->parsed()) {
        return exitCode;
    }
    check.hasColours = wantsColours(console);
    return runCheck(check);
}

} // namespace

int main(int argc, char** argv) {
    const brisk::Console console;
    try {
        return run(argc, argv, console);
    } catch (const std::exception& error) {
        std::cerr << "brisktitles: " << error.what() << '\n';
        return kWrongUsage;
    }
}
