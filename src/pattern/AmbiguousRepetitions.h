#pragma once

#include "pattern/PatternTree.h"

#include <cstddef>
#include <vector>

namespace brisk {

// The innermost repetitions whose rounds can take the same text in several ways, as nodes, in the order of the tree;
// see PatternCost.h for the doubtful ones.
std::vector<std::size_t> ambiguousRepetitions(const PatternTree& tree);

} // namespace brisk
