#pragma once

#include "pattern/PatternMatcher.h"
#include "pattern/PatternSearchHints.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace brisk {

// Finds the first match in a text and asks the matcher at as few places as it can: not where no match can begin, not
// where a text that every match contains is too far away or missing, and not where a pattern that begins with
// "anything" would have matched at an earlier place.
class PatternSearch {
public:
    explicit PatternSearch(const PatternTree& tree);

    const PatternProgram& steps() const { return program; }

    // Whether there is a match from the place on; the matcher, which is one for steps() and the text, knows it then.
    // `placesTried` grows by how often the matcher was asked.
    bool find(PatternMatcher& matcher, std::string_view text, std::size_t place, std::size_t& placesTried) const;

    // Whether a match that takes at least a byte begins right at the place. To assertions, the text begins at
    // `textBegin`.
    bool matchesAt(PatternMatcher& matcher, std::size_t place, std::size_t textBegin) const;

private:
    // A way to begin a match.
    struct Beginning {
        std::uint32_t step = 0;
        ByteFinder bytes;
    };

    void findLeadingRepetition();
    Beginning beginningAt(std::uint32_t step) const;
    std::size_t firstPlaceBefore(std::string_view text, std::size_t place, std::size_t end) const;

    PatternProgram program;
    NeededText needed;
    Beginning beginning;
    bool isAtTextBegin = false; // whether there is a match at the text's beginning or nowhere

    // Where the pattern begins with any number of bytes of a set, or with one line or more: it finds the end of these.
    // Where there is no match at one of them, there is none at the following ones, which the repetition could have
    // taken.
    std::optional<ByteFinder> endOfLeadingRun;

    // Where the pattern begins with any number of lines: it finds what belongs to no line. Where there is no match at
    // one place, further on in these lines there are only such that begin in the middle of a line, without a whole one.
    std::optional<ByteFinder> endOfLeadingLines;
    Beginning beginningWithoutLines;
};

} // namespace brisk
