#pragma once

#include "pattern/PatternLengths.h"

#include <string>

namespace brisk {

// What stands at the beginning of every match.
struct PatternBeginning {
    ByteSet guarded;   // the first bytes with ^ or \b before them
    ByteSet unguarded; // the first bytes without: they may stand in the middle of a word
    bool canBeEmpty;   // whether a match may have no first byte

    bool operator==(const PatternBeginning&) const = default;
};

// No match begins with any other byte; some of the bytes may begin none where lookaheads, assertions or back
// references are involved. A lookahead is no guard.
PatternBeginning beginningOf(const PatternTree& tree);

// A text that every match contains, behind so many bytes of it.
struct NeededText {
    std::string text;
    PatternLengths before;
    ByteSet bytesBefore; // nothing else stands there

    bool operator==(const NeededText&) const = default;
};

// The longest such text that the pattern tells by itself, the first one of several; empty where it tells none. Left out
// are alternatives and second rounds, so there may be longer ones.
NeededText neededText(const PatternTree& tree);

} // namespace brisk
