#include "pattern/PatternMatcher.h"

#include <algorithm>
#include <regex>

namespace brisk {

namespace {

using Kind = PatternStep::Kind;

constexpr std::size_t kNowhere = std::string_view::npos;
constexpr std::size_t kMaximumMemory = std::size_t{256} * 1024 * 1024;

// So many bytes that are looked through cost as much as a step.
constexpr std::size_t kBytesOfAStep = 16;

// How far a lazy run is looked through at once: at first not so far that it is wasted where the run ends soon, then far
// enough to be quick.
constexpr std::size_t kFirstWindow = 16;
constexpr std::size_t kLastWindow = 1024;

// Of a text that has to follow, as much is looked for: where a text is made to repeat it, more would cost more.
constexpr std::size_t kWantedLength = 32;

} // namespace

void PatternMatcher::Retreats::beginBlock() {
    const std::size_t number = blocks.empty() ? 0 : block + 1;
    if (number == blocks.size()) {
        if (number * kBlock * sizeof(Retreat) >= kMaximumMemory) {
            throw std::regex_error(std::regex_constants::error_stack);
        }
        // Not set to anything, and not every library has a function that says so.
        blocks.emplace_back(new Retreat[kBlock]); // NOLINT(modernize-make-unique)
    }
    use(number);
}

void PatternMatcher::Retreats::use(std::size_t number) {
    block = number;
    begin = blocks[number].get();
    top = begin;
    end = begin + kBlock;
}

void PatternMatcher::Retreats::cutTo(std::size_t size) {
    if (!blocks.empty()) {
        // A full block rather than the next one, empty.
        use(size == 0 ? 0 : (size - 1) / kBlock);
        top += size - block * kBlock;
    }
}

PatternMatcher::PatternMatcher(const PatternProgram& steps, std::string_view searched)
    : program(steps), text(searched), registers(steps.registerCount, kNowhere) {}

bool PatternMatcher::matches(std::size_t begin, std::uint32_t firstStep, bool mayBeEmpty) {
    if (areGroupsSet) {
        std::fill_n(registers.begin(), 2 * (program.groupCount + 1), kNowhere);
        areGroupsSet = false;
    }
    retreats.cutTo(0);
    next = firstStep;
    place = begin;
    while (true) {
        const PatternStep& step = program.steps[next];
        const bool isEnd = step.kind == Kind::Match;
        if (isEnd && (place != begin || mayBeEmpty)) {
            registers[0] = begin;
            registers[1] = place;
            areGroupsSet = true;
            return true;
        }
        if ((isEnd || !take(step)) && !retreat()) {
            return false;
        }
    }
}

void PatternMatcher::spend(std::size_t steps) {
    if (steps > stepsLeft) {
        throw std::regex_error(std::regex_constants::error_complexity);
    }
    stepsLeft -= steps;
}

void PatternMatcher::setRegister(std::uint32_t number, std::size_t value) {
    if (!retreats.isEmpty()) {
        retreats.push({Retreat::Kind::Restore, number, registers[number], 0});
    }
    registers[number] = value;
}

// Takes the step `next`. False where it does not fit.
bool PatternMatcher::take(const PatternStep& step) {
    spend(1);
    bool fits = true;
    switch (step.kind) {
    case Kind::Text:
        fits = takeText(step);
        break;
    case Kind::Set:
        fits = place < text.size() && step.bytes[static_cast<unsigned char>(text[place])];
        ++place;
        next = step.next;
        break;
    case Kind::Run:
        fits = takeRun(step);
        break;
    case Kind::TextBegin:
        fits = place == textBegin;
        next = step.next;
        break;
    case Kind::TextEnd:
        fits = place == text.size();
        next = step.next;
        break;
    case Kind::WordBoundary:
    case Kind::NoWordBoundary:
        fits = isAtWordBoundary() == (step.kind == Kind::WordBoundary);
        next = step.next;
        break;
    case Kind::BackReference:
        fits = takeBackReference(step);
        break;
    case Kind::OpenGroup:
        setRegister(2 * step.number, place);
        next = step.next;
        break;
    case Kind::CloseGroup:
        setRegister(2 * step.number + 1, place);
        areGroupsSet = true;
        next = step.next;
        break;
    case Kind::Choice:
        choose(step);
        break;
    case Kind::BeginLoop:
        if (step.countRegister != PatternStep::kNoRegister) {
            setRegister(step.countRegister, 0);
        }
        if (step.roundRegister != PatternStep::kNoRegister) {
            setRegister(step.roundRegister, kNowhere);
        }
        next = step.next;
        break;
    case Kind::Loop:
        fits = takeLoop(step);
        break;
    case Kind::BeginLookahead:
        registers[step.countRegister] = retreats.size();
        retreats.push({Retreat::Kind::Lookahead, next, place, 0});
        next = step.other;
        break;
    case Kind::EndLookahead:
        fits = endLookahead(step);
        break;
    case Kind::Match:
        break;
    }
    return fits;
}

// Byte by byte, since most texts are short or differ soon.
bool PatternMatcher::isAt(std::string_view wanted) {
    if (wanted.size() > text.size() - place) {
        return false;
    }
    std::size_t same = 0;
    while (same < wanted.size() && text[place + same] == wanted[same]) {
        ++same;
    }
    spend(same / kBytesOfAStep);
    return same == wanted.size();
}

bool PatternMatcher::takeText(const PatternStep& step) {
    const std::string_view wanted = program.textOf(step);
    if (!isAt(wanted)) {
        return false;
    }
    place += wanted.size();
    next = step.next;
    return true;
}

bool PatternMatcher::takeRun(const PatternStep& step) {
    const std::size_t left = text.size() - place;
    if (step.minimum > left) {
        return false;
    }
    const std::size_t shortest = place + step.minimum;
    const std::size_t limit = place + std::min(step.maximum, left);
    if (step.isLazy) {
        const std::size_t least = step.others.find(text, place, shortest);
        spend((least - place) / kBytesOfAStep);
        return least == shortest && endRunFrom(next, shortest, limit);
    }
    const std::size_t longest = step.others.find(text, place, limit);
    spend((longest - place) / kBytesOfAStep);
    if (longest < shortest) {
        return false;
    }
    if (step.givenBack == PatternStep::kVaries) {
        return endRunWithin(next, shortest, longest);
    }
    if (longest - shortest < step.givenBack) {
        return false;
    }
    place = longest - step.givenBack;
    next = step.next;
    return true;
}

// The longest first.
bool PatternMatcher::endRunWithin(std::uint32_t run, std::size_t shortest, std::size_t longest) {
    const PatternStep& step = program.steps[run];
    const PossibleBytes& behind = program.steps[step.next].possible;
    std::size_t end = longest;
    while (!behind.fits(text, end)) {
        if (end == shortest) {
            return false;
        }
        --end;
    }
    spend((longest - end) / kBytesOfAStep);
    if (end > shortest) {
        retreats.push({Retreat::Kind::ShorterRun, run, end, shortest});
    }
    place = end;
    next = step.next;
    return true;
}

// The shortest first.
bool PatternMatcher::endRunFrom(std::uint32_t run, std::size_t shortest, std::size_t longest) {
    const PatternStep& step = program.steps[run];
    const PatternStep& behind = program.steps[step.next];
    const std::string_view wanted = program.textOf(program.steps[step.other]).substr(0, kWantedLength);
    std::size_t end = shortest;
    for (std::size_t length = kFirstWindow;; length = std::min(2 * length, kLastWindow)) {
        const std::size_t window = end + std::min(length, longest - end);
        const std::size_t furthest = step.others.find(text, end, window);
        std::size_t found = end;
        if (!wanted.empty()) {
            found = std::min(findText(text.substr(0, furthest + wanted.size()), wanted, end), furthest + 1);
        }
        while (found <= furthest && !behind.possible.fits(text, found)) {
            ++found;
        }
        spend((found - end) / kBytesOfAStep);
        if (found <= furthest) {
            end = found;
            break;
        }
        if (furthest < window || window == longest) {
            return false;
        }
        end = furthest;
    }
    if (end < longest && step.bytes[static_cast<unsigned char>(text[end])]) {
        retreats.push({Retreat::Kind::LongerRun, run, end, longest});
    }
    place = end;
    next = step.next;
    return true;
}

bool PatternMatcher::takeBackReference(const PatternStep& step) {
    const std::string_view wanted = group(step.number);
    if (!isAt(wanted)) {
        return false;
    }
    place += wanted.size();
    next = step.next;
    return true;
}

void PatternMatcher::choose(const PatternStep& step) {
    const bool canBeOther = program.steps[step.other].possible.fits(text, place);
    if (canBeOther && program.steps[step.next].possible.fits(text, place)) {
        retreats.push({Retreat::Kind::Resume, step.other, place, 0});
    }
    next = canBeOther && !program.steps[step.next].possible.fits(text, place) ? step.other : step.next;
}

bool PatternMatcher::takeLoop(const PatternStep& step) {
    if (step.isOfLines && !step.isLazy) {
        const std::size_t most = step.others.find(text, place, text.size());
        spend((most - place) / kBytesOfAStep);
        return endLinesWithin(next, place, most);
    }
    const bool isCounted = step.countRegister != PatternStep::kNoRegister;
    const std::size_t rounds = isCounted ? registers[step.countRegister] : step.minimum;
    if (rounds < step.minimum) {
        beginRound(step);
        return true;
    }
    const bool wasEmpty = step.roundRegister != PatternStep::kNoRegister && registers[step.roundRegister] == place;
    const bool isMost = isCounted && rounds == step.maximum;
    const bool canGoOn = !wasEmpty && !isMost && program.steps[step.other].possible.fits(text, place);
    const bool canEnd = program.steps[step.next].possible.fits(text, place);
    if (!canGoOn && !canEnd) {
        return false;
    }
    const bool goesOn = canGoOn && !(step.isLazy && canEnd);
    if (canGoOn && canEnd) {
        const auto kind = step.isLazy ? Retreat::Kind::NextRound : Retreat::Kind::Resume;
        retreats.push({kind, step.isLazy ? next : step.next, place, 0});
    }
    if (goesOn) {
        beginRound(step);
    } else {
        next = step.next;
    }
    return true;
}

// The most first.
bool PatternMatcher::endLinesWithin(std::uint32_t loop, std::size_t fewest, std::size_t most) {
    const PatternStep& step = program.steps[loop];
    const PossibleBytes& behind = program.steps[step.next].possible;
    const std::string_view lineEnd = program.textOf(program.steps[program.steps[step.other].next]);
    const std::string_view wanted = program.textOf(program.steps[step.number]).substr(0, kWantedLength);
    // Where what follows can begin: at its text; without one, behind a line.
    const auto lastUpTo = [&](std::size_t last) {
        if (last == fewest) {
            return fewest;
        }
        const std::size_t shift = wanted.empty() ? 1 : 0;
        const std::size_t found = findLastText(text, wanted.empty() ? lineEnd : wanted, fewest, last - shift);
        return found == kNowhere ? fewest : found + shift;
    };
    std::size_t end = lastUpTo(most);
    while (end > fewest && (text[end - 1] != lineEnd.front() || !behind.fits(text, end))) {
        end = lastUpTo(end - 1);
    }
    spend((most - end) / kBytesOfAStep);
    if (!behind.fits(text, end)) {
        return false;
    }
    if (end > fewest) {
        retreats.push({Retreat::Kind::FewerLines, loop, end, fewest});
    }
    place = end;
    next = step.next;
    return true;
}

void PatternMatcher::beginRound(const PatternStep& step) {
    const bool isCounted = step.countRegister != PatternStep::kNoRegister;
    const bool isOwed = isCounted && registers[step.countRegister] < step.minimum;
    if (step.roundRegister != PatternStep::kNoRegister && !isOwed) {
        setRegister(step.roundRegister, place);
    }
    if (isCounted) {
        setRegister(step.countRegister, registers[step.countRegister] + 1);
    }
    next = step.other;
}

// What is inside fits: nothing else is tried there. What its groups matched stays, as with std::regex, also where
// nothing must match and where what follows makes the matcher retreat.
bool PatternMatcher::endLookahead(const PatternStep& step) {
    const std::size_t begin = registers[step.countRegister];
    retreats.cutTo(begin + 1);
    const Retreat lookahead = retreats.pop();
    const PatternStep& beginning = program.steps[lookahead.step];
    place = lookahead.place;
    next = beginning.next;
    return !beginning.isNegative;
}

bool PatternMatcher::isAtWordBoundary() const {
    const bool isBehindWord = place > textBegin && isWordByte(text[place - 1]);
    const bool isBeforeWord = place < text.size() && isWordByte(text[place]);
    return isBehindWord != isBeforeWord;
}

// Goes back to the last choice and on from there. False where none is left.
bool PatternMatcher::retreat() {
    while (!retreats.isEmpty()) {
        const Retreat last = retreats.pop();
        switch (last.kind) {
        case Retreat::Kind::Resume:
            next = last.step;
            place = last.place;
            return true;
        case Retreat::Kind::ShorterRun:
            if (endRunWithin(last.step, last.other, last.place - 1)) {
                return true;
            }
            break;
        case Retreat::Kind::FewerLines:
            if (endLinesWithin(last.step, last.other, last.place - 1)) {
                return true;
            }
            break;
        case Retreat::Kind::LongerRun:
            if (endRunFrom(last.step, last.place + 1, last.other)) {
                return true;
            }
            break;
        case Retreat::Kind::NextRound:
            place = last.place;
            beginRound(program.steps[last.step]);
            return true;
        case Retreat::Kind::Restore:
            registers[last.step] = last.place;
            break;
        case Retreat::Kind::Lookahead:
            if (program.steps[last.step].isNegative) {
                place = last.place;
                next = program.steps[last.step].next;
                return true;
            }
            break;
        }
    }
    return false;
}

} // namespace brisk
