#pragma once

#include "tools/titles/KeyAnalysis.h"

namespace brisk::workbench {

// The tree of a key; nothing where it does not follow the grammar. Adds what an author of keys mistakes in the grammar.
std::optional<PatternTree> readKey(const std::string& key, std::vector<KeyFinding>& found);

} // namespace brisk::workbench
