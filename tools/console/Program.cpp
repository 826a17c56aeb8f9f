#include "tools/console/Program.h"

#include "base/Version.h"

#include <cstdlib>
#include <exception>
#include <iostream>

#include <CLI/CLI.hpp>

namespace brisk {

namespace {

constexpr int kWrongUsage = 2;

} // namespace

bool wantsColours(const Console& console) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): there is one thread.
    const char* noColour = std::getenv("NO_COLOR");
    return console.takesColours() && (noColour == nullptr || *noColour == '\0');
}

std::optional<int> readCommandLine(CLI::App& program, int argc, char** argv) {
    program.set_version_flag("--version", program.get_name() + " " + kVersion);
    program.require_subcommand(1);
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return program.exit(error) == 0 ? 0 : kWrongUsage;
    }
    return std::nullopt;
}

int runProgram(const char* name, const std::function<int(const Console&)>& run) {
    const Console console;
    try {
        return run(console);
    } catch (const std::exception& error) {
        std::cerr << name << ": " << error.what() << '\n';
        return kWrongUsage;
    }
}

} // namespace brisk
