#pragma once

#include "pattern/PatternTree.h"

#include <optional>
#include <string_view>
#include <vector>

// What a key does that its author hardly meant, told from its tree alone. All places are parts of the pattern.

namespace brisk::workbench {

// Whether the node is one of several alternatives of a group or lookahead, or part of one.
bool isAlternative(const PatternTree& tree, std::size_t index);

// Whether some match is the empty text wherever the search stands: neither ^ nor $ nor a lookahead that needs a byte
// says where.
bool canMatchNothingAnywhere(const PatternTree& tree);

// ^ in front of what a line begins with. Not told of: one of several alternatives, (?:^|\n), one in front of
// "anything", ^[\s\S]*?, and one in front of a character that only the beginning of a whole file has, as '<' or '{'.
std::vector<PatternSpan> lineBeginsMeant(const PatternTree& tree);

// The greedy .* and [\s\S]* in front of a group, with something between that they can take, too: the group is the last
// one on the line or in the file.
std::vector<PatternSpan> greedyToLast(const PatternTree& tree, std::size_t group);

// The names of settings, in front of a group, that follow "anything" across lines: longer names end in them.
std::vector<PatternSpan> namesBehindAnything(const PatternTree& tree, std::size_t group);

// A carriage return without which nothing matches.
std::optional<PatternSpan> neededCarriageReturn(const PatternTree& tree);

// Parts through which a search may go again and again: two "anything" one behind the other, and a part that runs over
// the lines from each line's beginning.
std::vector<PatternSpan> repeatedScans(const PatternTree& tree);

// Escapes that are letters here and something else in other dialects: \A, \Z, \h, \e.
std::vector<PatternSpan> letterEscapes(std::string_view pattern);

} // namespace brisk::workbench
