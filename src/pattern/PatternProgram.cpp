#include "pattern/PatternProgram.h"

#include "pattern/PatternLengths.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace brisk {

namespace {

using Kind = PatternStep::Kind;
constexpr std::size_t kUnbounded = PatternNode::kUnbounded;

// Up to here rounds that match nothing are counted like all others, as std::regex does, which lays out each of them.
constexpr std::size_t kCountedEmptyRounds = 100'000;

PossibleBytes operator|(const PossibleBytes& left, const PossibleBytes& right) {
    return {left.bytes | right.bytes, left.canBeNone || right.canBeNone};
}

// Makes the steps from the end of the pattern to its beginning: what follows a step is there already.
class Builder {
public:
    explicit Builder(const PatternTree& all) : tree(all), lengths(lengthsOf(all)), first(firstBytesOf(all, lengths)) {
        program.texts = tree.texts;
        program.groupCount = tree.groupCount;
        program.registerCount = 2 * (tree.groupCount + 1);
        program.steps.reserve(2 * tree.nodes.size());
    }

    PatternProgram build() {
        add(Kind::Match).possible = {ByteSet().set(), true};
        program.start = alternatives(0, 0);
        return std::move(program);
    }

private:
    const PossibleBytes& possibleAt(std::uint32_t step) const { return program.steps[step].possible; }

    // Made in its place, since a step is large.
    PatternStep& add(Kind kind, std::uint32_t next = 0) {
        PatternStep& step = program.steps.emplace_back();
        step.kind = kind;
        step.next = next;
        return step;
    }

    std::uint32_t lastStep() const { return static_cast<std::uint32_t>(program.steps.size() - 1); }

    // A step that takes no byte itself.
    std::uint32_t addEmpty(Kind kind, std::uint32_t next, std::size_t number = 0) {
        PatternStep& step = add(kind, next);
        step.number = static_cast<std::uint32_t>(number);
        step.possible = possibleAt(next);
        return lastStep();
    }

    std::uint32_t newRegister() { return static_cast<std::uint32_t>(program.registerCount++); }

    // Each of these gives the step with which the node begins.
    std::uint32_t part(std::size_t index, std::uint32_t next) {
        const PatternNode& node = tree.nodes[index];
        switch (node.kind) {
        case PatternNode::Kind::Text:
            return text(node, next);
        case PatternNode::Kind::Set:
            return set(tree.setOf(node), next);
        case PatternNode::Kind::TextBegin:
            return addEmpty(Kind::TextBegin, next);
        case PatternNode::Kind::TextEnd:
            add(Kind::TextEnd, next).possible = {{}, true};
            return lastStep();
        case PatternNode::Kind::WordBoundary:
            return addEmpty(Kind::WordBoundary, next);
        case PatternNode::Kind::NoWordBoundary:
            return addEmpty(Kind::NoWordBoundary, next);
        case PatternNode::Kind::BackReference: {
            program.hasBackReferences = true;
            PatternStep& step = add(Kind::BackReference, next);
            step.number = static_cast<std::uint32_t>(node.number);
            step.possible = {ByteSet().set(), true};
            return lastStep();
        }
        case PatternNode::Kind::Repetition:
            return repetition(index, next);
        case PatternNode::Kind::Group:
            return group(index, next);
        case PatternNode::Kind::Lookahead:
        case PatternNode::Kind::NegativeLookahead:
            return lookahead(index, next);
        case PatternNode::Kind::Sequence:
            break;
        }
        return sequence(index, next);
    }

    std::uint32_t text(const PatternNode& node, std::uint32_t next) {
        PatternStep& step = add(Kind::Text, next);
        step.minimum = node.number;
        step.maximum = node.maximum;
        step.possible.bytes.set(static_cast<unsigned char>(tree.textOf(node).front()));
        return lastStep();
    }

    std::uint32_t set(const ByteSet& bytes, std::uint32_t next) {
        PatternStep& step = add(Kind::Set, next);
        step.bytes = bytes;
        step.possible.bytes = bytes;
        return lastStep();
    }

    std::uint32_t sequence(std::size_t index, std::uint32_t next) {
        const std::size_t begin = awaitChildren(index);
        while (awaiting.size() > begin) {
            next = part(takeLastChild(), next);
        }
        return next;
    }

    std::uint32_t alternatives(std::size_t index, std::uint32_t next) {
        const std::size_t begin = awaitChildren(index);
        std::uint32_t all = sequence(takeLastChild(), next);
        while (awaiting.size() > begin) {
            all = choice(sequence(takeLastChild(), next), all);
        }
        return all;
    }

    // Answers how many nodes of others are waiting.
    std::size_t awaitChildren(std::size_t index) {
        const std::size_t others = awaiting.size();
        tree.forEachChild(index, [this](std::size_t child) { awaiting.push_back(child); });
        return others;
    }

    std::size_t takeLastChild() {
        const std::size_t child = awaiting.back();
        awaiting.pop_back();
        return child;
    }

    std::uint32_t choice(std::uint32_t wanted, std::uint32_t otherwise) {
        PatternStep& step = add(Kind::Choice, wanted);
        step.other = otherwise;
        step.possible = possibleAt(wanted) | possibleAt(otherwise);
        return lastStep();
    }

    std::uint32_t group(std::size_t index, std::uint32_t next) {
        const PatternNode& node = tree.nodes[index];
        if (const auto bytes = singleByte(index)) {
            return set(*bytes, next);
        }
        if (node.number == 0) {
            return alternatives(index, next);
        }
        const std::uint32_t inside = alternatives(index, addEmpty(Kind::CloseGroup, next, node.number));
        return addEmpty(Kind::OpenGroup, inside, node.number);
    }

    std::uint32_t lookahead(std::size_t index, std::uint32_t next) {
        program.capturesAhead = program.capturesAhead || capturesAhead(index);
        const std::uint32_t ownRegister = newRegister();
        PatternStep& end = add(Kind::EndLookahead);
        end.possible = {ByteSet().set(), true};
        end.countRegister = ownRegister;
        const std::uint32_t inside = alternatives(index, lastStep());
        PatternStep& step = add(Kind::BeginLookahead, next);
        step.other = inside;
        // Never passed over, for what its groups match stays even where the pattern does not go on.
        step.possible = {ByteSet().set(), true};
        step.countRegister = ownRegister;
        step.isNegative = tree.nodes[index].kind == PatternNode::Kind::NegativeLookahead;
        return lastStep();
    }

    std::uint32_t repetition(std::size_t index, std::uint32_t next) {
        const PatternNode& node = tree.nodes[index];
        if (node.maximum == 0) {
            return next;
        }
        if (node.minimum == 1 && node.maximum == 1) {
            return part(index + 1, next);
        }
        if (const auto bytes = singleByte(index + 1)) {
            return run(node, *bytes, next);
        }
        if (node.maximum == 1) {
            const std::uint32_t once = part(index + 1, next);
            return node.isLazy ? choice(next, once) : choice(once, next);
        }
        return loop(index, next);
    }

    std::uint32_t run(const PatternNode& node, const ByteSet& bytes, std::uint32_t next) {
        PatternStep& step = add(Kind::Run, next);
        step.isLazy = node.isLazy;
        step.minimum = node.minimum;
        step.maximum = node.maximum;
        step.bytes = bytes;
        step.others = ByteFinder(~bytes);
        step.other = textAt(next);
        step.givenBack = givenBack(step);
        step.possible.bytes = bytes;
        if (node.minimum == 0) {
            step.possible = step.possible | possibleAt(next);
        }
        return lastStep();
    }

    // Where the text behind a run has its first byte that the run cannot take, the run ends so many bytes before.
    std::size_t givenBack(const PatternStep& run) const {
        if ((run.bytes & possibleAt(run.next).bytes).none()) {
            return 0;
        }
        const std::string_view behind = program.textOf(program.steps[run.other]);
        const auto end = std::find_if(behind.begin(), behind.end(),
                                      [&run](char byte) { return !run.bytes[static_cast<unsigned char>(byte)]; });
        return run.maximum == PatternNode::kUnbounded && end != behind.end()
                   ? static_cast<std::size_t>(end - behind.begin())
                   : PatternStep::kVaries;
    }

    // The text with which a step has to go on; without one the last step, which has none.
    std::uint32_t textAt(std::uint32_t step) const {
        while (program.steps[step].kind == Kind::OpenGroup || program.steps[step].kind == Kind::CloseGroup) {
            step = program.steps[step].next;
        }
        return program.steps[step].kind == Kind::Text ? step : 0;
    }

    std::uint32_t loop(std::size_t index, std::uint32_t next) {
        const PatternNode& node = tree.nodes[index];
        const bool canBeEmpty = lengths[index + 1].minimum == 0;
        const bool isCounted = node.minimum > 1 || node.maximum != kUnbounded;
        const bool mayRepeatNothing = canBeEmpty && node.maximum > kCountedEmptyRounds;
        const std::uint32_t countRegister = isCounted ? newRegister() : PatternStep::kNoRegister;
        const std::uint32_t roundRegister = mayRepeatNothing ? newRegister() : PatternStep::kNoRegister;
        PatternStep& step = add(Kind::Loop, next);
        step.isLazy = node.isLazy;
        step.minimum = node.minimum;
        step.maximum = node.maximum;
        step.countRegister = countRegister;
        step.roundRegister = roundRegister;
        // From the tree, since the round's own steps need it.
        step.possible = PossibleBytes{first[index + 1], false} | possibleAt(next);
        if (canBeEmpty || capturesAhead(index)) {
            step.possible.canBeNone = true;
            step.possible.bytes.set();
        }
        const std::uint32_t loop = lastStep();
        const std::uint32_t round = part(index + 1, loop);
        program.steps[loop].other = round;
        findLines(loop);
        const std::uint32_t begin = node.minimum == 1 && !isCounted ? round : loop;
        if (!isCounted && !mayRepeatNothing) {
            return begin;
        }
        addEmpty(Kind::BeginLoop, begin);
        program.steps.back().countRegister = countRegister;
        program.steps.back().roundRegister = roundRegister;
        return lastStep();
    }

    // Of the node: a lookahead with a group, which keeps what led nowhere and so is never passed over.
    bool capturesAhead(std::size_t index) const {
        const auto isAhead = [](const PatternNode& node) {
            return node.kind == PatternNode::Kind::Lookahead || node.kind == PatternNode::Kind::NegativeLookahead;
        };
        const auto isCapture = [](const PatternNode& node) {
            return node.kind == PatternNode::Kind::Group && node.number != 0;
        };
        std::size_t endOfAhead = index;
        for (std::size_t node = index; node < index + tree.nodes[index].size; ++node) {
            if (isAhead(tree.nodes[node])) {
                endOfAhead = std::max(endOfAhead, node + tree.nodes[node].size);
            } else if (node < endOfAhead && isCapture(tree.nodes[node])) {
                return true;
            }
        }
        return false;
    }

    // A line is all up to its end and the end itself, and can be taken in no other way.
    void findLines(std::uint32_t index) {
        PatternStep& loop = program.steps[index];
        const PatternStep& line = program.steps[loop.other];
        const PatternStep& end = program.steps[line.next];
        loop.isOfLines = loop.countRegister == PatternStep::kNoRegister && line.kind == Kind::Run &&
                         line.minimum == 0 && line.maximum == kUnbounded && end.kind == Kind::Text &&
                         end.maximum == 1 && end.next == index && line.givenBack == 0;
        if (loop.isOfLines) {
            loop.others = ByteFinder(~(line.bytes | end.possible.bytes));
            loop.number = textAt(loop.next);
        }
    }

    // The bytes of a part that takes exactly one byte and captures nothing.
    std::optional<ByteSet> singleByte(std::size_t index) const {
        const PatternNode& node = tree.nodes[index];
        if (lengths[index] != PatternLengths{1, 1}) {
            return std::nullopt;
        }
        const bool isByte = node.kind == PatternNode::Kind::Text || node.kind == PatternNode::Kind::Set;
        const bool isGroup = node.kind == PatternNode::Kind::Group && node.number == 0;
        if (isByte) {
            return first[index];
        }
        if (!isGroup &&
            (node.kind != PatternNode::Kind::Sequence || index + 1 + tree.nodes[index + 1].size != index + node.size)) {
            return std::nullopt;
        }
        ByteSet bytes;
        for (std::size_t child = index + 1; child < index + node.size; child += tree.nodes[child].size) {
            const auto of = singleByte(child);
            if (!of) {
                return std::nullopt;
            }
            bytes |= *of;
        }
        return bytes;
    }

    const PatternTree& tree;
    const std::vector<PatternLengths> lengths;
    const std::vector<ByteSet> first;
    std::vector<std::size_t> awaiting; // children whose steps are still to be made
    PatternProgram program;
};

} // namespace

PatternProgram programOf(const PatternTree& tree) {
    return Builder(tree).build();
}

} // namespace brisk
