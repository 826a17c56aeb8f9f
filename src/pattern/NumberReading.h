#pragma once

#include "pattern/PatternTree.h"

#include <cstddef>

namespace brisk {

// Whether a group can match a text in which reading a number finds no digit: white space, a sign, then something else
// or the end. A group that takes no part in a match has the empty text. Exact about the texts of the group itself
// without assertions, lookaheads and back references in it; what stands around it is not regarded, so that it may say
// yes where there is no such match. False where there is no such group.
bool canLackDigits(const PatternTree& tree, std::size_t group);

} // namespace brisk
