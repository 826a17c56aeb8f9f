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
    // The library itself says only that one is missing.
    if (argc > 1 && *argv[1] != '-' &&
        program.get_subcommands([argv](const CLI::App* one) { return one->get_name() == argv[1]; }).empty()) {
        std::cerr << program.get_name() << ": there is no command '" << argv[1]
                  << "'\nRun with --help for more information.\n";
        return kWrongUsage;
    }
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return program.exit(error) == 0 ? 0 : kWrongUsage;
    }
    return std::nullopt;
}

int runProgram(const char* name, const std::function<int(const Console&)>& run) {
    const Console console;
    int exitCode = kWrongUsage;
    try {
        exitCode = run(console);
    } catch (const std::exception& error) {
        std::cerr << name << ": " << error.what() << '\n';
    }
    // A full disk may show only now.
    if (!std::cout.flush()) {
        std::cerr << name << ": the standard output cannot be written\n";
        return kWrongUsage;
    }
    return exitCode;
}

} // namespace brisk
