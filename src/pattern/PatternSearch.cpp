#include "pattern/PatternSearch.h"

#include "pattern/AmbiguousRepetitions.h"

#include <algorithm>
#include <vector>

namespace brisk {

namespace {

using Kind = PatternStep::Kind;

// Of a longer needed text its beginning will do, and costs less where a text is made to repeat it.
constexpr std::size_t kNeededLength = 32;

// How far a byte that no match has before its needed text is looked for: a name is shorter, and where nearly all bytes
// may stand there it is not worth more.
constexpr std::size_t kFurthestBefore = 256;

} // namespace

PatternSearch::PatternSearch(const PatternTree& tree) : program(programOf(tree)) {
    // Whether a hopeless pattern is given up must not hang on what else is missing in the file: its author is to
    // notice.
    if (ambiguousRepetitions(tree).empty()) {
        needed = neededText(tree);
        needed.text.resize(std::min(needed.text.size(), kNeededLength));
    }
    beginning = beginningAt(program.start);
    findLeadingRepetition();
}

PatternSearch::Beginning PatternSearch::beginningAt(std::uint32_t step) const {
    return {step, ByteFinder(program.steps[step].possible.bytes)};
}

void PatternSearch::findLeadingRepetition() {
    std::vector<std::uint32_t> opened; // groups
    std::uint32_t first = program.start;
    while (program.steps[first].kind == Kind::OpenGroup) {
        opened.push_back(program.steps[first].number);
        first = program.steps[first].next;
    }
    const PatternStep& step = program.steps[first];
    isAtTextBegin = step.kind == Kind::TextBegin;
    // A back reference may tell one place from another.
    if (program.hasBackReferences || step.maximum != PatternNode::kUnbounded) {
        return;
    }
    if (step.kind == Kind::Run) {
        const PatternStep& behind = program.steps[program.steps[step.next].next];
        const bool isFirstLine = behind.isOfLines && behind.other == first; // of at least one
        endOfLeadingRun = isFirstLine ? behind.others : step.others;
        return;
    }
    // A lookahead behind lines that led nowhere keeps its groups.
    if (!step.isOfLines || step.minimum > 0 || program.capturesAhead) {
        return;
    }
    endOfLeadingLines = step.others;
    std::uint32_t without = step.next;
    for (; !opened.empty(); opened.pop_back()) {
        PatternStep open{Kind::OpenGroup};
        open.number = opened.back();
        open.next = without;
        open.possible = program.steps[without].possible;
        program.steps.push_back(open);
        without = static_cast<std::uint32_t>(program.steps.size() - 1);
    }
    beginningWithoutLines = beginningAt(without);
}

// A match that begins before this place and has its needed text at `end` or behind would have a byte in between that
// none has there.
std::size_t PatternSearch::firstPlaceBefore(std::string_view text, std::size_t place, std::size_t end) const {
    const std::size_t furthest = end - std::min(end - place, kFurthestBefore);
    std::size_t first = end;
    while (first > furthest && needed.bytesBefore[static_cast<unsigned char>(text[first - 1])]) {
        --first;
    }
    return first > furthest ? first : place;
}

bool PatternSearch::find(PatternMatcher& matcher, std::string_view text, std::size_t place,
                         std::size_t& placesTried) const {
    matcher.resetCosts();
    if (isAtTextBegin) {
        ++placesTried;
        return place == 0 && matcher.matches(0, beginning.step);
    }
    std::size_t neededAt = 0;
    std::size_t linesFrom = place; // from here on matches with lines are new
    while (place <= text.size()) {
        std::size_t last = text.size();
        if (!needed.text.empty()) {
            const std::size_t nearest = place + needed.before.minimum;
            if (neededAt < nearest || neededAt == 0) {
                neededAt = nearest < text.size() ? findText(text, needed.text, nearest) : std::string_view::npos;
                if (neededAt == std::string_view::npos) {
                    return false;
                }
                place = firstPlaceBefore(text, place, neededAt);
            }
            if (needed.before.maximum < neededAt) {
                place = std::max(place, neededAt - needed.before.maximum);
            }
            last = neededAt - needed.before.minimum;
            if (place > last) {
                continue;
            }
        }
        const bool isWithinLines = place < linesFrom;
        const Beginning& begin = isWithinLines ? beginningWithoutLines : beginning;
        last = isWithinLines ? std::min(last, linesFrom - 1) : last;
        place = begin.bytes.find(text, place, last);
        if (!program.steps[begin.step].possible.fits(text, place)) {
            ++place;
            continue;
        }
        ++placesTried;
        if (matcher.matches(place, begin.step)) {
            return true;
        }
        if (endOfLeadingRun) {
            place = endOfLeadingRun->find(text, place, text.size());
        } else if (endOfLeadingLines && !isWithinLines) {
            linesFrom = endOfLeadingLines->find(text, place, text.size()) + 1;
        }
        ++place;
    }
    return false;
}

bool PatternSearch::matchesAt(PatternMatcher& matcher, std::size_t place, std::size_t textBegin) const {
    matcher.resetCosts();
    matcher.setTextBegin(textBegin);
    const bool isFound = matcher.matches(place, beginning.step, false);
    matcher.setTextBegin(0);
    return isFound;
}

} // namespace brisk
