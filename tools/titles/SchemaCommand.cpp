#include "tools/titles/Commands.h"
#include "tools/titles/DatabaseSchema.h"

#include <iostream>
#include <memory>

#include <nlohmann/json.hpp>

namespace brisk::workbench {

namespace {

// The same definitions with another root.
std::string schemaOfOneTitle() {
    const auto database = nlohmann::ordered_json::parse(databaseSchema());
    const nlohmann::ordered_json schema{
        {"$schema", database["$schema"]},
        {"title", "A title in a file of its own"},
        {"allOf", nlohmann::ordered_json::array({{{"$ref", "#/definitions/title"}}})},
        {"definitions", database["definitions"]},
    };
    return schema.dump(2) + '\n';
}

} // namespace

void addSchemaCommand(CLI::App& program, int& exitCode) {
    struct Options {
        bool isOneTitle = false;
        std::string format = "text";
    };
    const auto options = std::make_shared<Options>();
    CLI::App* command =
        program.add_subcommand("schema", "the JSON schema of title databases, for editors and validators");
    command->add_flag("--title", options->isOneTitle, "of a file with one title, as `build` takes them");
    command->add_option("--format", options->format, "text or json, which are the same here")
        ->check(CLI::IsMember({"text", "json"}))
        ->capture_default_str();
    command->footer("Examples:\n"
                    "  brisktitles schema > titles_db.schema.json\n"
                    "  brisktitles schema --title > title.schema.json\n"
                    "docs/title-database.md says how an editor uses it.");
    command->callback([options, &exitCode] {
        if (options->isOneTitle) {
            std::cout << schemaOfOneTitle();
        } else {
            std::cout << databaseSchema();
        }
        exitCode = 0;
    });
}

} // namespace brisk::workbench
