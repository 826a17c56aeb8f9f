#pragma once

#include "pattern/PatternProgram.h"

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace brisk {

// Takes the steps of a program on one text, as std::regex would: of several matches that begin at a place the first one
// counts, in the order of alternatives and of greedy or lazy repetitions. Needs no stack for long texts. For one
// thread.
//
// All that it is asked together costs no more than a second or a few and 256 MB; then it throws std::regex_error,
// error_complexity or error_stack.
class PatternMatcher {
public:
    // Both must outlive the matcher.
    PatternMatcher(const PatternProgram& steps, std::string_view searched);

    // To assertions, the text begins at `begin`.
    void setTextBegin(std::size_t begin) { textBegin = begin; }

    // Starts counting costs anew.
    void resetCosts() { stepsLeft = kMaximumSteps; }

    // Whether a match begins at `begin` with the given step of the program.
    bool matches(std::size_t begin, std::uint32_t firstStep, bool mayBeEmpty = true);

    // Of the match found last: what a group matched, 0 being the whole match; empty, without a place, where it took no
    // part.
    std::string_view group(std::size_t number) const {
        const std::size_t begin = registers[2 * number];
        const std::size_t end = registers[2 * number + 1];
        return end == std::string_view::npos ? std::string_view() : std::string_view(text.data() + begin, end - begin);
    }

private:
    static constexpr std::size_t kMaximumSteps = 100'000'000;

    // What to do when the matcher is stuck.
    struct Retreat {
        enum class Kind : std::uint32_t {
            Resume,     // with the step at the place
            ShorterRun, // end the step's run before the place, though not before `other`
            FewerLines, // the same with its lines
            LongerRun,  // end it behind the place, though not behind `other`
            NextRound,  // begin another round of the step's loop at the place
            Restore,    // give the register `step` its old value, `place`
            Lookahead,  // nothing inside the lookahead fits: it began at the place
        };
        Kind kind;
        std::uint32_t step;
        std::size_t place;
        std::size_t other;
    };

    // A stack that holds what it has and no more: it may grow large.
    class Retreats {
    public:
        bool isEmpty() const { return top == begin && block == 0; }
        std::size_t size() const { return block * kBlock + static_cast<std::size_t>(top - begin); }
        void push(const Retreat& retreat) {
            if (top == end) {
                beginBlock();
            }
            *top++ = retreat;
        }
        Retreat pop() {
            if (top == begin) {
                cutTo(size());
            }
            return *--top;
        }
        // Leaves the first ones.
        void cutTo(std::size_t size);

    private:
        static constexpr std::size_t kBlock = 2048;

        void beginBlock();
        void use(std::size_t number);

        std::vector<std::unique_ptr<Retreat[]>> blocks;
        std::size_t block = 0; // which one is in use, and where its retreats begin and end
        Retreat* begin = nullptr;
        Retreat* top = nullptr;
        Retreat* end = nullptr;
    };

    void spend(std::size_t steps);
    void setRegister(std::uint32_t number, std::size_t value);
    bool take(const PatternStep& step);
    bool isAt(std::string_view wanted);
    bool takeText(const PatternStep& step);
    bool takeRun(const PatternStep& step);
    bool endRunWithin(std::uint32_t run, std::size_t shortest, std::size_t longest);
    bool endRunFrom(std::uint32_t run, std::size_t shortest, std::size_t longest);
    bool takeBackReference(const PatternStep& step);
    bool takeLoop(const PatternStep& step);
    bool endLinesWithin(std::uint32_t loop, std::size_t fewest, std::size_t most);
    void beginRound(const PatternStep& step);
    bool endLookahead(const PatternStep& step);
    void choose(const PatternStep& step);
    bool isAtWordBoundary() const;
    bool retreat();

    const PatternProgram& program;
    const std::string_view text;
    std::size_t textBegin = 0;
    std::size_t stepsLeft = kMaximumSteps;
    std::vector<std::size_t> registers;
    bool areGroupsSet = false;
    Retreats retreats;
    std::uint32_t next = 0; // the step to take, and where
    std::size_t place = 0;
};

} // namespace brisk
