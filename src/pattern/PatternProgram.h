#pragma once

#include "pattern/PatternTree.h"
#include "pattern/TextScan.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brisk {

// With which bytes something can begin, up to the end of the whole match. May be too many, never too few.
struct PossibleBytes {
    ByteSet bytes;
    bool canBeNone = false; // whether it can stand at the text's end

    bool fits(std::string_view text, std::size_t place) const {
        return place < text.size() ? bytes[static_cast<unsigned char>(text[place])] : canBeNone;
    }
};

// One step of a matcher. Unless told otherwise it goes on with the step `next`.
struct PatternStep {
    enum class Kind : std::uint8_t {
        Text,           // PatternProgram::textOf
        Set,            // one of `bytes`
        Run,            // `minimum` to `maximum` bytes, up to the first that `others` finds; `other` is a text that
                        // has to follow, or the match
        TextBegin,      // ^
        TextEnd,        // $
        WordBoundary,   // \b
        NoWordBoundary, // \B
        BackReference,  // what group `number` matched
        OpenGroup,      // group `number`
        CloseGroup,
        Choice,         // `next`, or else `other`
        BeginLoop,      // sets the registers of a loop
        Loop,           // another round is the step `other`; where rounds are lines, `others` finds what belongs to
                        // none, and step `number` is a text that has to follow, or the match
        BeginLookahead, // `other` has to match, or must not
        EndLookahead,
        Match, // the end
    };
    static constexpr std::uint32_t kNoRegister = UINT32_MAX;
    static constexpr std::size_t kVaries = SIZE_MAX;

    Kind kind = Kind::Match;
    bool isLazy = false;
    bool isOfLines = false; // loop: a round is any bytes but one, and then this one
    bool isNegative = false;
    std::uint32_t next = 0;
    std::uint32_t other = 0;
    std::uint32_t number = 0;
    std::uint32_t countRegister =
        kNoRegister; // loop: the rounds so far, where they count; lookahead: the matcher's own
    std::uint32_t roundRegister = kNoRegister; // loop: where the last round began, where it could be empty
    std::size_t minimum = 0;
    std::size_t maximum = 0;
    std::size_t givenBack = kVaries; // greedy run: how many of its bytes what follows takes from it, in every match
    ByteSet bytes{};
    ByteFinder others{};
    PossibleBytes possible{};
};

// A pattern as steps, which a matcher takes one after the other.
struct PatternProgram {
    std::string_view textOf(const PatternStep& text) const {
        return std::string_view(texts).substr(text.minimum, text.maximum);
    }

    std::vector<PatternStep> steps;
    std::string texts;
    std::uint32_t start = 0;
    std::size_t groupCount = 0;
    std::size_t registerCount = 0; // two for each group (where it begins and ends, 0 being the whole match), and loops'
    bool hasBackReferences = false;
    bool capturesAhead = false; // whether a lookahead has a group
};

// Needs stack for nested groups, of which a tree has no more than 200 levels.
PatternProgram programOf(const PatternTree& tree);

} // namespace brisk
