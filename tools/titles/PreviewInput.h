#pragma once

#include "tools/titles/DatabaseTitles.h"
#include "tools/titles/Displays.h"
#include "tools/titles/PreviewCommand.h"
#include "tools/titles/SourceText.h"

#include <filesystem>
#include <vector>

namespace brisk::workbench {

// What a preview is made of, from its command line. All throw std::runtime_error.

// Refuses options that do not go together, and an output that is also an input.
void checkOptions(const PreviewOptions& options);

// Whether the machine's own files and registry are to be looked at: on Windows, where nothing is given for them.
bool looksAtMachine(const PreviewOptions& options);

std::vector<Display> chooseDisplays(const PreviewOptions& options);

// Prints a fault of the JSON on standard error first.
DatabaseTitles readDatabase(const SourceText& database, const UserFolders& userFolders);

// Those that are named, or all.
std::vector<DatabaseTitle> chooseTitles(const DatabaseTitles& all, const PreviewOptions& options);

// Whether both paths lead to one file, which need not exist.
bool isSameFile(const std::filesystem::path& one, const std::filesystem::path& other);

} // namespace brisk::workbench
