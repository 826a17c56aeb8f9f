#pragma once

#include "tools/titles/Report.h"

#include <string_view>

namespace brisk::workbench {

// The regular expressions of a text title: their grammar, their groups, what they lose, where they also match, what
// they cost, and whether what is created is found again. The source is the text that the title stands in.
void checkPatterns(std::string_view source, const JsonValue& title, Report& report);

} // namespace brisk::workbench
