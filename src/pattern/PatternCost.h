#pragma once

#include "pattern/PatternTree.h"

#include <vector>

namespace brisk {

// A part of a pattern for which a search can cost more than the text is long.
struct PatternCost {
    enum class Kind {
        // A repetition whose rounds can take the same text in several ways, (a+)+ or (?:a|a)*: the cost may double with
        // every byte.
        Ambiguous,
        // Two repetitions without end that meet and can take the same bytes, \s*\s*: the cost grows with the square of
        // what they take.
        Adjacent,
        // A repetition without end with which a match can begin at any place, (?:.|\n)*?: where what follows it is
        // missing, the cost grows with the square of what it takes.
        Leading,
    };

    Kind kind;
    PatternSpan span; // of the repetition; of all from the one to the other
    ByteSet bytes;    // with which a round can begin; for `Adjacent`, a round of either repetition

    bool operator==(const PatternCost&) const = default;
};

// All of them, by their place; an ambiguous repetition inside another one stands for both. Counts up to 16 are no
// repetition without end, and larger ones are one as far as ambiguity goes.
//
// Errs to the side of cost: counts are taken for any number of rounds, assertions and lookaheads for nothing, a back
// reference in a repetition for an ambiguity, and so is a repetition of more than 128 bytes and sets with choices in it
// or one that takes too long to look through. Not told of: two repetitions with something between them that both could
// take (.*=.*), and a pattern whose match begins with something that the text repeats often.
std::vector<PatternCost> costsOf(const PatternTree& tree);

} // namespace brisk
