// brisktitles: the workbench of those who write title databases.
#include "tools/console/Console.h"
#include "tools/titles/Commands.h"

#include "base/Version.h"

#include <cstdlib>
#include <exception>
#include <iostream>

namespace {

constexpr int kWrongUsage = 2;

bool wantsColours(const brisk::Console& console) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): there is one thread.
    const char* noColour = std::getenv("NO_COLOR");
    return console.takesColours() && (noColour == nullptr || *noColour == '\0');
}

int run(int argc, char** argv, const brisk::Console& console) {
    using namespace brisk::workbench;
    CLI::App program("Finds what is wrong with a title database before a player does.", "brisktitles");
    program.set_version_flag("--version", std::string("brisktitles ") + brisk::kVersion);
    program.require_subcommand(1);
    program.footer(
        "Exit codes: 0 nothing to complain of, 1 findings or differences, 2 wrong usage or unreadable input.");

    const bool hasColours = wantsColours(console);
    int exitCode = 0;
    addCheckCommand(program, exitCode, hasColours);
    addPreviewCommand(program, exitCode, hasColours);
    addSchemaCommand(program, exitCode);
    addTestCommand(program, exitCode, hasColours);
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return program.exit(error) == 0 ? 0 : kWrongUsage;
    }
    return exitCode;
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
