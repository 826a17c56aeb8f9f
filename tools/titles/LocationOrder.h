#pragma once

#include "tools/titles/Report.h"

namespace brisk::workbench {

// Finds the locations of a text title at which adjusting would create a file that the game never reads, for the
// player's own is at a later one.
void checkLocationOrder(const JsonValue& locations, Report& report);

} // namespace brisk::workbench
