#pragma once

#include "tools/console/Console.h"

#include <functional>
#include <optional>

namespace CLI {
class App;
}

namespace brisk {

// The manners that the programs of tools/ share.

// Colours are for a terminal alone, and not where NO_COLOR is set.
bool wantsColours(const Console& console);

// Adds --version, wants one command, and reads the command line. An exit code when nothing is left to do: 0 for help
// and version, 2 for wrong usage, a command that there is not included.
std::optional<int> readCommandLine(CLI::App& program, int argc, char** argv);

// Gives the program its console; the exit code. What is thrown is printed behind the program's name, and the code is 2;
// so it is where the standard output could not be written.
int runProgram(const char* name, const std::function<int(const Console&)>& run);

} // namespace brisk
