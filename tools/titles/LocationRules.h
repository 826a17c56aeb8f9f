#pragma once

#include "tools/titles/Report.h"

namespace brisk::workbench {

// Where a title's settings are looked for: placeholders, wildcards, roots, and what becomes of several locations.
void checkLocations(const JsonValue& title, Report& report);

} // namespace brisk::workbench
