#pragma once

#include "tools/titles/Report.h"

namespace brisk::workbench {

// What settings are to be, what is created, under which conditions, and what the player reads: everything but the
// patterns of keys.
void checkValues(const JsonValue& title, Report& report);

} // namespace brisk::workbench
