#pragma once

#include "pattern/PatternTree.h"

#include <cstddef>
#include <optional>
#include <vector>

// Questions about what a key can match, answered from its tree alone. No text is tried. Assertions and lookaheads may
// hold anywhere, a back reference may stand for any text: where that leaves a doubt, each answer says which way it
// errs.

namespace brisk {

// Where group `number` (1 is the first one) stands in the pattern, its brackets included. Nothing where there is no
// such group.
std::optional<PatternSpan> spanOfGroup(const PatternTree& tree, std::size_t number);

// Whether some match is the empty text. Exact without assertions, lookaheads and back references; with them it may say
// yes where none is.
bool canMatchNothing(const PatternTree& tree);

// The parts of the pattern whose text is lost when a match is replaced by the texts of its groups, in order: what
// stands outside of all capturing groups, and what is repeated around one, since a group keeps its last round only.
// Parts that follow each other are one. Exact, but for a part that can never match.
std::vector<PatternSpan> textOutsideGroups(const PatternTree& tree);

// ^ with something before it and $ with something behind it that takes at least a byte. They stand for the text's
// beginning and end and can never hold there; whoever wrote them meant a line. Those where nothing need stand before or
// behind are not told of. In a lookahead, only what follows there is behind.
std::vector<PatternSpan> assertionsWithinText(const PatternTree& tree);

// The greedy repetitions without end directly before a group that take more than half of the bytes with which the
// group's text can begin: they leave it the last byte of a number, or a later setting. Those of sets of bytes, and of
// groups that choose between single bytes.
std::vector<PatternSpan> greedyBefore(const PatternTree& tree, std::size_t group);

} // namespace brisk
