#include "pattern/PatternLengths.h"

#include <algorithm>

namespace brisk {

namespace {

using Kind = PatternNode::Kind;
constexpr std::size_t kUnbounded = PatternNode::kUnbounded;

std::size_t sum(std::size_t left, std::size_t right) {
    return left > kUnbounded - right ? kUnbounded : left + right;
}

std::size_t product(std::size_t left, std::size_t right) {
    if (left == 0 || right == 0) {
        return 0;
    }
    return left > kUnbounded / right ? kUnbounded : left * right;
}

PatternLengths operator+(PatternLengths left, PatternLengths right) {
    return {sum(left.minimum, right.minimum), sum(left.maximum, right.maximum)};
}

PatternLengths lengthsOfGroup(const PatternTree& tree, std::size_t group, const std::vector<PatternLengths>& lengths) {
    PatternLengths all{kUnbounded, 0};
    tree.forEachChild(group, [&](std::size_t child) {
        all.minimum = std::min(all.minimum, lengths[child].minimum);
        all.maximum = std::max(all.maximum, lengths[child].maximum);
    });
    return all;
}

// `terms` is room to work in.
void placeTerms(const PatternTree& tree, std::size_t sequence, const std::vector<PatternLengths>& lengths,
                std::vector<std::size_t>& terms, std::vector<PatternPlace>& places) {
    terms.clear();
    PatternLengths before = places[sequence].before;
    tree.forEachChild(sequence, [&](std::size_t term) {
        places[term].before = before;
        before = before + lengths[term];
        terms.push_back(term);
    });
    PatternLengths behind = places[sequence].behind;
    for (std::size_t last = terms.size(); last-- > 0;) {
        places[terms[last]].behind = behind;
        behind = behind + lengths[terms[last]];
    }
}

} // namespace

std::vector<PatternLengths> lengthsOf(const PatternTree& tree) {
    std::vector<PatternLengths> lengths(tree.nodes.size());
    for (std::size_t index = tree.nodes.size(); index-- > 0;) {
        const PatternNode& node = tree.nodes[index];
        PatternLengths& own = lengths[index];
        switch (node.kind) {
        case Kind::Text:
            own = {tree.textOf(node).size(), tree.textOf(node).size()};
            break;
        case Kind::Set:
            own = {1, 1};
            break;
        case Kind::BackReference:
            own = {0, kUnbounded};
            break;
        case Kind::Repetition:
            own = {product(node.minimum, lengths[index + 1].minimum),
                   product(node.maximum, lengths[index + 1].maximum)};
            break;
        case Kind::Group:
            own = lengthsOfGroup(tree, index, lengths);
            break;
        case Kind::Sequence:
            tree.forEachChild(index, [&](std::size_t child) { own = own + lengths[child]; });
            break;
        case Kind::TextBegin:
        case Kind::TextEnd:
        case Kind::WordBoundary:
        case Kind::NoWordBoundary:
        case Kind::Lookahead:
        case Kind::NegativeLookahead:
            break;
        }
    }
    return lengths;
}

std::vector<PatternPlace> placesOf(const PatternTree& tree, const std::vector<PatternLengths>& lengths) {
    std::vector<PatternPlace> places(tree.nodes.size());
    std::vector<std::size_t> terms;
    for (std::size_t index = 0; index < tree.nodes.size(); ++index) {
        const PatternNode& node = tree.nodes[index];
        PatternPlace inside = places[index];
        if (node.kind == Kind::Sequence) {
            placeTerms(tree, index, lengths, terms, places);
            continue;
        }
        if (node.kind == Kind::Lookahead || node.kind == Kind::NegativeLookahead) {
            inside.behind = {};
        } else if (node.kind == Kind::Repetition && node.maximum > 0) {
            // Any number of other rounds may come before and behind.
            const std::size_t rounds = node.maximum == kUnbounded ? kUnbounded : node.maximum - 1;
            const PatternLengths others{0, product(rounds, lengths[index + 1].maximum)};
            inside.before = inside.before + others;
            inside.behind = inside.behind + others;
        }
        tree.forEachChild(index, [&](std::size_t child) { places[child] = inside; });
    }
    return places;
}

std::vector<ByteSet> firstBytesOf(const PatternTree& tree, const std::vector<PatternLengths>& lengths) {
    std::vector<ByteSet> bytes(tree.nodes.size());
    for (std::size_t index = tree.nodes.size(); index-- > 0;) {
        const PatternNode& node = tree.nodes[index];
        bool canBegin = node.kind != Kind::Lookahead && node.kind != Kind::NegativeLookahead;
        if (node.kind == Kind::Text) {
            bytes[index].set(static_cast<unsigned char>(tree.textOf(node).front()));
        } else if (node.kind == Kind::Set) {
            bytes[index] = tree.setOf(node);
        } else if (node.kind == Kind::BackReference) {
            bytes[index].set();
        } else if (node.kind != Kind::Repetition || node.maximum > 0) {
            tree.forEachChild(index, [&](std::size_t child) {
                bytes[index] |= canBegin ? bytes[child] : ByteSet();
                canBegin = canBegin && (node.kind != Kind::Sequence || lengths[child].minimum == 0);
            });
        }
    }
    return bytes;
}

} // namespace brisk
