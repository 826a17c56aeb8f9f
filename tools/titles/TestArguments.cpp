#include "tools/titles/Commands.h"
#include "tools/titles/TestCommand.h"

#include <memory>

namespace brisk::workbench {

void addTestCommand(CLI::App& program, int& exitCode, bool hasColours) {
    const auto options = std::make_shared<TestOptions>();
    CLI::App* command = program.add_subcommand("test", "whether the titles of a folder do what their golden cases say");
    command->add_option("FOLDER", options->folder, "a folder of titles, or one title's")->required();
    command->add_flag("--accept", options->accepts,
                      "writes what came out as what is expected, and shows the difference");
    command->add_option("--junit", options->junit, "receives the results in JUnit's XML")->type_name("FILE");
    command
        ->add_option("--with-service", options->service,
                     "runs the cases through this service, too, in a sandbox; on Windows or under Wine")
        ->type_name("BRISK.EXE");
    command->add_option("--format", options->format, "text or json")
        ->check(CLI::IsMember({"text", "json"}))
        ->capture_default_str();
    command->footer("Examples:\n"
                    "  brisktitles test titles\n"
                    "  brisktitles test --accept \"titles/Starlit Harbour\"\n"
                    "  brisktitles test titles --junit results.xml\n"
                    "  brisktitles.exe test titles --with-service C:\\Brisk\\brisk.exe\n"
                    "docs/title-tool.md explains the folders and files.");
    command->callback([options, &exitCode, hasColours] {
        options->hasColours = hasColours;
        exitCode = runTest(*options);
    });
}

} // namespace brisk::workbench
