#pragma once

#include "tools/titles/KeyAnalysis.h"

namespace brisk::workbench {

// The parts of a key that make a search long on files as games have them.
std::vector<KeyFinding> findCosts(const PatternTree& tree);

} // namespace brisk::workbench
