#pragma once

#include "pattern/PatternTree.h"

#include <cstddef>
#include <vector>

namespace brisk {

// How many bytes at least and at most; PatternNode::kUnbounded where there is no limit.
struct PatternLengths {
    std::size_t minimum = 0;
    std::size_t maximum = 0;

    bool operator==(const PatternLengths&) const = default;
};

// What a match steps over for each node. Assertions and lookaheads step over nothing, a back reference over any text. A
// set without a byte counts as one byte, although nothing matches it.
std::vector<PatternLengths> lengthsOf(const PatternTree& tree);

// Where each node lies in a match: how much the match steps over before and behind it. Inside a lookahead, what follows
// there is what lies behind.
struct PatternPlace {
    PatternLengths before;
    PatternLengths behind;
};
std::vector<PatternPlace> placesOf(const PatternTree& tree, const std::vector<PatternLengths>& lengths);

// The bytes with which what each node steps over can begin; none for assertions and lookaheads.
std::vector<ByteSet> firstBytesOf(const PatternTree& tree, const std::vector<PatternLengths>& lengths);

} // namespace brisk
