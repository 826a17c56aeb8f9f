#pragma once

#include <CLI/CLI.hpp>

namespace brisk::workbench {

// The program's commands. Each function adds one, with its options and examples. Once the command line is parsed, the
// command that it names is run and leaves the program's exit code in `exitCode`, which has to live until then.
void addBuildCommand(CLI::App& program, int& exitCode, bool hasColours);
void addCheckCommand(CLI::App& program, int& exitCode, bool hasColours);
void addDiffCommand(CLI::App& program, int& exitCode);
void addKeyCommand(CLI::App& program, int& exitCode);
void addNewCommand(CLI::App& program, int& exitCode);
void addPreviewCommand(CLI::App& program, int& exitCode, bool hasColours);
void addSchemaCommand(CLI::App& program, int& exitCode);
void addTestCommand(CLI::App& program, int& exitCode, bool hasColours);

} // namespace brisk::workbench
