// brisktitles: the workbench of those who write title databases.
#include "tools/console/Program.h"
#include "tools/titles/Commands.h"

namespace {

int run(int argc, char** argv, const brisk::Console& console) {
    using namespace brisk::workbench;
    CLI::App program("Finds what is wrong with a title database before a player does.", "brisktitles");
    program.footer("Exit codes: 0 nothing to complain of, 1 findings or differences,\n"
                   "            2 wrong usage, unreadable input or output that cannot be written.");

    const bool hasColours = wantsColours(console);
    int exitCode = 0;
    addBuildCommand(program, exitCode, hasColours);
    addCheckCommand(program, exitCode, hasColours);
    addDiffCommand(program, exitCode);
    addKeyCommand(program, exitCode);
    addNewCommand(program, exitCode);
    addPreviewCommand(program, exitCode, hasColours);
    addSchemaCommand(program, exitCode);
    addTestCommand(program, exitCode, hasColours);
    return brisk::readCommandLine(program, argc, argv).value_or(exitCode);
}

} // namespace

int main(int argc, char** argv) {
    return brisk::runProgram("brisktitles", [&](const brisk::Console& console) { return run(argc, argv, console); });
}
