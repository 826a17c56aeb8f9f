#pragma once

#include "tools/titles/Report.h"

#include <string_view>

namespace brisk::workbench {

// Where a title's settings are looked for: placeholders, wildcards, roots, and what becomes of several locations.
void checkLocations(std::string_view source, const JsonValue& title, Report& report);

} // namespace brisk::workbench
