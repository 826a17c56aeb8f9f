#pragma once

#include "tools/titles/Displays.h"

#include <optional>

namespace brisk::workbench {

// This machine's display as the service sees it. Nothing where there is no Windows, or where it cannot be told.
std::optional<Display> machineDisplay();

} // namespace brisk::workbench
