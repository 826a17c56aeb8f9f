#pragma once

#include "tools/titles/Preview.h"

#include <string>
#include <string_view>

namespace brisk::workbench {

// How the texts of a preview are said on a terminal.

// On one line, in quotes and without control characters, so that no file can play with the terminal.
std::string inQuotes(std::string_view text);

// Keeps line ends and tabs.
std::string withoutControls(std::string_view text);

// "StarlitHarbour.exe (Starlit Harbour)".
std::string headOf(const TitlePreview& preview);

// What becomes of a field: "changes to "1600"", "created at line 3 as "\nSharp=7"", ...
std::string describeOutcome(const FieldPreview& field, bool isRegistry);

} // namespace brisk::workbench
