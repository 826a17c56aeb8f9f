#include "pattern/AmbiguousRepetitions.h"

#include "pattern/PatternLengths.h"

#include <algorithm>
#include <bitset>
#include <utility>

namespace brisk {

namespace {

using Kind = PatternNode::Kind;

// More rounds than this multiply to something that matters.
constexpr std::size_t kFewRounds = 16;

constexpr std::size_t kMaximumPlaces = 128;

// Steps that one pattern may take: some hundredths of a second.
constexpr std::size_t kMaximumSteps = 10'000'000;

using Places = std::bitset<kMaximumPlaces>;

// What a part of a repetition does about its places, which are its bytes and sets.
struct Part {
    Places first;
    Places last;
    int waysToBeEmpty = 0; // 2: several
};

// The places of one repetition, and which of them can follow which.
class Rounds {
public:
    // Answers whether the rounds are ambiguous. Takes its steps from `stepsLeft`.
    static bool areAmbiguous(const PatternTree& tree, std::size_t repetition, std::size_t& stepsLeft) {
        Rounds rounds(tree, repetition);
        const std::size_t end = repetition + tree.nodes[repetition].size;
        for (std::size_t index = end; index-- > repetition + 1;) {
            if (rounds.isApart[index - repetition]) {
                continue;
            }
            rounds.parts[index - repetition] = rounds.partOf(index);
            if (rounds.isAmbiguous || rounds.parts[index - repetition].waysToBeEmpty > 1) {
                return true;
            }
        }
        const Part& round = rounds.parts[1];
        rounds.connect(round.last, round.first);
        return rounds.isAmbiguous || rounds.canDiverge(stepsLeft);
    }

private:
    Rounds(const PatternTree& all, std::size_t repetition)
        : tree(all), begin(repetition), parts(all.nodes[repetition].size), isApart(parts.size()) {
        for (std::size_t index = 1; index < parts.size(); ++index) {
            const Kind kind = tree.nodes[begin + index].kind;
            if (isApart[index] || (kind != Kind::Lookahead && kind != Kind::NegativeLookahead)) {
                continue;
            }
            std::fill_n(isApart.begin() + static_cast<std::ptrdiff_t>(index) + 1, tree.nodes[begin + index].size - 1,
                        true);
        }
    }

    Part partOf(std::size_t index) {
        const PatternNode& node = tree.nodes[index];
        Part part;
        switch (node.kind) {
        case Kind::Text:
            for (const char byte : tree.textOf(node)) {
                ByteSet bytes;
                bytes.set(static_cast<unsigned char>(byte));
                const Part next = place(bytes);
                connect(part.last, next.first);
                part = {part.first.any() ? part.first : next.first, next.last};
            }
            break;
        case Kind::Set:
            part = place(tree.setOf(node));
            break;
        case Kind::BackReference:
            isAmbiguous = true;
            break;
        case Kind::Repetition:
            part = repeated(node, partAt(index + 1));
            break;
        case Kind::Group:
            tree.forEachChild(index, [&](std::size_t child) {
                const Part& other = partAt(child);
                part = {part.first | other.first, part.last | other.last, part.waysToBeEmpty + other.waysToBeEmpty};
            });
            break;
        case Kind::Sequence:
            part.waysToBeEmpty = 1;
            tree.forEachChild(index, [&](std::size_t child) {
                const Part& next = partAt(child);
                connect(part.last, next.first);
                part = {part.waysToBeEmpty > 0 ? part.first | next.first : part.first,
                        next.waysToBeEmpty > 0 ? part.last | next.last : next.last,
                        part.waysToBeEmpty * next.waysToBeEmpty};
            });
            break;
        case Kind::TextBegin:
        case Kind::TextEnd:
        case Kind::WordBoundary:
        case Kind::NoWordBoundary:
        case Kind::Lookahead:
        case Kind::NegativeLookahead:
            part.waysToBeEmpty = 1;
            break;
        }
        return part;
    }

    const Part& partAt(std::size_t index) const { return parts[index - begin]; }

    Part place(const ByteSet& bytes) {
        Part part;
        if (bytesAt.size() == kMaximumPlaces) {
            isAmbiguous = true;
        } else {
            part.first.set(bytesAt.size());
            part.last = part.first;
            bytesAt.push_back(bytes);
            following.emplace_back();
        }
        return part;
    }

    Part repeated(const PatternNode& node, Part round) {
        if (node.maximum == 0) {
            return {{}, {}, 1};
        }
        if (node.maximum > 1) {
            connect(round.last, round.first);
            // No round, or an empty one.
            round.waysToBeEmpty *= 2;
        }
        round.waysToBeEmpty += node.minimum == 0 ? 1 : 0;
        return round;
    }

    void connect(const Places& left, const Places& right) {
        for (std::size_t place = 0; place < bytesAt.size(); ++place) {
            if (left[place]) {
                // Twice: with another round of an inner repetition, and with another round of an outer one.
                isAmbiguous = isAmbiguous || (following[place] & right).any();
                following[place] |= right;
            }
        }
    }

    // Whether two walks over the places that take the same bytes can part and come together again.
    bool canDiverge(std::size_t& stepsLeft) const {
        std::vector<Places> seen(bytesAt.size());
        std::vector<std::pair<std::size_t, std::size_t>> pairs;
        pairs.reserve(bytesAt.size());
        for (std::size_t place = 0; place < bytesAt.size(); ++place) {
            pairs.emplace_back(place, place);
        }
        while (!pairs.empty()) {
            const auto [left, right] = pairs.back();
            pairs.pop_back();
            const std::size_t cost = bytesAt.size() * following[left].count();
            if (cost > stepsLeft) {
                stepsLeft = 0;
                return true;
            }
            stepsLeft -= cost;
            for (std::size_t nextLeft = 0; nextLeft < bytesAt.size(); ++nextLeft) {
                for (std::size_t nextRight = 0; following[left][nextLeft] && nextRight < bytesAt.size(); ++nextRight) {
                    if (!following[right][nextRight] || (bytesAt[nextLeft] & bytesAt[nextRight]).none()) {
                        continue;
                    }
                    if (nextLeft == nextRight && left != right) {
                        return true;
                    }
                    if (nextLeft != nextRight && !seen[nextLeft][nextRight]) {
                        seen[nextLeft].set(nextRight);
                        pairs.emplace_back(nextLeft, nextRight);
                    }
                }
            }
        }
        return false;
    }

    const PatternTree& tree;
    const std::size_t begin;
    std::vector<Part> parts;
    std::vector<bool> isApart; // inside a lookahead
    std::vector<ByteSet> bytesAt;
    std::vector<Places> following;
    bool isAmbiguous = false;
};

} // namespace

std::vector<std::size_t> ambiguousRepetitions(const PatternTree& tree) {
    std::vector<std::size_t> found;
    // Whether there is more than one way through a node.
    std::vector<bool> hasChoice(tree.nodes.size());
    std::size_t stepsLeft = kMaximumSteps;
    std::vector<PatternLengths> lengths; // worked out where they are needed, which is seldom
    for (std::size_t index = tree.nodes.size(); index-- > 0;) {
        const PatternNode& node = tree.nodes[index];
        std::size_t children = 0;
        tree.forEachChild(index, [&](std::size_t child) {
            ++children;
            hasChoice[index] = hasChoice[index] || hasChoice[child];
        });
        const bool isInnermost = found.empty() || found.back() >= index + node.size;
        // Which of the rounds that must be take nothing, (?:a?){30}: as many ways as there are choices of them.
        const bool isOwedOften = node.kind == Kind::Repetition && node.minimum > kFewRounds;
        if (isOwedOften && lengths.empty()) {
            lengths = lengthsOf(tree);
        }
        const bool mayAllBeEmpty = isOwedOften && lengths[index + 1].minimum == 0 && lengths[index + 1].maximum > 0;
        if (node.kind == Kind::Repetition && node.maximum > kFewRounds && hasChoice[index] && isInnermost &&
            (mayAllBeEmpty || Rounds::areAmbiguous(tree, index, stepsLeft))) {
            found.push_back(index);
        }
        hasChoice[index] = hasChoice[index] || node.kind == Kind::Repetition || node.kind == Kind::BackReference ||
                           (node.kind == Kind::Group && children > 1);
    }
    std::reverse(found.begin(), found.end());
    return found;
}

} // namespace brisk
