#include "tools/titles/Commands.h"
#include "tools/titles/DatabaseDiff.h"
#include "tools/titles/InputFile.h"
#include "tools/titles/JsonLayout.h"

#include <iostream>
#include <memory>
#include <stdexcept>

namespace brisk::workbench {

namespace {

using Json = nlohmann::ordered_json;

struct DiffOptions {
    std::string before;
    std::string after;
    std::string format = "text";
};

std::string readJson(const std::string& path) {
    std::string bytes = readInput(path);
    if (!Json::accept(bytes)) {
        throw std::runtime_error(path + " is no JSON; `brisktitles check` tells where it is wrong");
    }
    return bytes;
}

std::string spelled(const Json& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

void printDifference(const TitleDifference& difference) {
    std::cout << difference.binaryName;
    if (!difference.titleName.empty()) {
        std::cout << " (" << difference.titleName << ')';
    }
    std::cout << ": " << nameOf(difference.kind);
    if (difference.kind == TitleDifference::Kind::Renamed) {
        std::cout << " from " << difference.earlierName;
    }
    std::cout << '\n';
    for (const TitleChange& change : difference.changes) {
        std::cout << "  " << change.what;
        if (!change.key.empty() && change.what != "key") {
            std::cout << " of " << spelled(Json(change.key));
        }
        if (change.what == "field") {
            std::cout << (change.before.is_null() ? ": added " + spelled(change.after)
                                                  : ": removed " + spelled(change.before))
                      << '\n';
        } else {
            std::cout << "\n    - " << spelled(change.before) << "\n    + " << spelled(change.after) << '\n';
        }
    }
}

Json toJson(const TitleDifference& difference) {
    Json changes = Json::array();
    for (const TitleChange& change : difference.changes) {
        changes.push_back({{"what", change.what},
                           {"key", change.key.empty() ? Json() : Json(change.key)},
                           {"old", change.before},
                           {"new", change.after}});
    }
    return {{"title", difference.binaryName},
            {"name", difference.titleName},
            {"change", nameOf(difference.kind)},
            {"earlier_title", difference.earlierName.empty() ? Json() : Json(difference.earlierName)},
            {"changes", changes}};
}

int runDiff(const DiffOptions& options) {
    const std::vector<TitleDifference> differences =
        compareDatabases(readJson(options.before), readJson(options.after));
    if (options.format == "json") {
        Json titles = Json::array();
        for (const TitleDifference& difference : differences) {
            titles.push_back(toJson(difference));
        }
        std::cout << layOutTitle(Json{{"titles", titles}}) << '\n';
    } else {
        for (const TitleDifference& difference : differences) {
            printDifference(difference);
        }
        std::cout << differences.size() << (differences.size() == 1 ? " title differs\n" : " titles differ\n");
    }
    return differences.empty() ? 0 : 1;
}

} // namespace

void addDiffCommand(CLI::App& program, int& exitCode) {
    const auto options = std::make_shared<DiffOptions>();
    CLI::App* command = program.add_subcommand("diff", "what changes for players from one database to the next");
    command->add_option("OLD", options->before, "the database that players have")->required();
    command->add_option("NEW", options->after, "the one that they get")->required();
    command->add_option("--format", options->format, "text or json")
        ->check(CLI::IsMember({"text", "json"}))
        ->capture_default_str();
    command->footer("Examples:\n"
                    "  brisktitles diff released/titles_db.json titles_db.json\n"
                    "  brisktitles diff --format json released/titles_db.json titles_db.json\n"
                    "Layout and the order of titles and keys make no difference.");
    command->callback([options, &exitCode] { exitCode = runDiff(*options); });
}

} // namespace brisk::workbench
