#include "pattern/PatternSearchHints.h"

#include <utility>
#include <vector>

namespace brisk {

namespace {

using Kind = PatternNode::Kind;

// What a part begins with, and how it can match the empty text: with ^ or \b in it or without.
struct Beginning {
    ByteSet guarded;
    ByteSet unguarded;
    bool emptyWithGuard = false;
    bool emptyWithoutGuard = false;
};

ByteSet ifAny(bool condition, const ByteSet& bytes) {
    return condition ? bytes : ByteSet();
}

Beginning inSequence(const Beginning& left, const Beginning& right) {
    return {left.guarded | ifAny(left.emptyWithGuard, right.guarded | right.unguarded) |
                ifAny(left.emptyWithoutGuard, right.guarded),
            left.unguarded | ifAny(left.emptyWithoutGuard, right.unguarded),
            (left.emptyWithGuard && (right.emptyWithGuard || right.emptyWithoutGuard)) ||
                (left.emptyWithoutGuard && right.emptyWithGuard),
            left.emptyWithoutGuard && right.emptyWithoutGuard};
}

Beginning either(const Beginning& left, const Beginning& right) {
    return {left.guarded | right.guarded, left.unguarded | right.unguarded, left.emptyWithGuard || right.emptyWithGuard,
            left.emptyWithoutGuard || right.emptyWithoutGuard};
}

// The bytes that a match may have before what it has for the node.
ByteSet bytesBefore(const PatternTree& tree, std::size_t node) {
    ByteSet bytes;
    for (std::size_t index = 0; index < node; ++index) {
        const PatternNode& before = tree.nodes[index];
        if (before.kind == Kind::Text) {
            for (const char byte : tree.textOf(before)) {
                bytes.set(static_cast<unsigned char>(byte));
            }
        } else if (before.kind == Kind::Set) {
            bytes |= tree.setOf(before);
        } else if (before.kind == Kind::BackReference) {
            bytes.set();
        }
    }
    return bytes;
}

Beginning beginningOfRepetition(const PatternNode& repetition, const Beginning& round) {
    const Beginning nothing{{}, {}, false, true};
    if (repetition.maximum == 0) {
        return nothing;
    }
    // A third round adds nothing to two.
    const Beginning rounds = repetition.maximum == 1 ? round : inSequence(round, either(round, nothing));
    return repetition.minimum == 0 ? either(rounds, nothing) : rounds;
}

} // namespace

PatternBeginning beginningOf(const PatternTree& tree) {
    std::vector<Beginning> beginnings(tree.nodes.size());
    for (std::size_t index = tree.nodes.size(); index-- > 0;) {
        const PatternNode& node = tree.nodes[index];
        Beginning& own = beginnings[index];
        switch (node.kind) {
        case Kind::Text:
            own.unguarded.set(static_cast<unsigned char>(tree.textOf(node).front()));
            break;
        case Kind::Set:
            own.unguarded = tree.setOf(node);
            break;
        case Kind::TextBegin:
        case Kind::WordBoundary:
            own.emptyWithGuard = true;
            break;
        case Kind::TextEnd:
        case Kind::NoWordBoundary:
        case Kind::Lookahead:
        case Kind::NegativeLookahead:
            own.emptyWithoutGuard = true;
            break;
        case Kind::BackReference:
            own.unguarded.set();
            own.emptyWithoutGuard = true;
            break;
        case Kind::Repetition:
            own = beginningOfRepetition(node, beginnings[index + 1]);
            break;
        case Kind::Group:
            tree.forEachChild(index, [&](std::size_t child) { own = either(own, beginnings[child]); });
            break;
        case Kind::Sequence:
            own.emptyWithoutGuard = true;
            tree.forEachChild(index, [&](std::size_t child) { own = inSequence(own, beginnings[child]); });
            break;
        }
    }
    const Beginning& all = beginnings.front();
    return {all.guarded, all.unguarded, all.emptyWithGuard || all.emptyWithoutGuard};
}

NeededText neededText(const PatternTree& tree) {
    const auto lengths = lengthsOf(tree);
    const auto places = placesOf(tree, lengths);
    NeededText longest;
    std::size_t longestFrom = 0; // the node that it begins with
    NeededText current;
    std::size_t currentFrom = 0;
    std::vector<bool> endsRun(tree.nodes.size() + 1); // whether more rounds may stand before this node
    for (std::size_t index = 0; index < tree.nodes.size();) {
        const PatternNode& node = tree.nodes[index];
        const std::size_t end = index + node.size;
        if (endsRun[index]) {
            current = {};
        }
        const bool hasAlternatives = node.kind == Kind::Group && index + 1 + tree.nodes[index + 1].size < end;
        if (node.kind == Kind::Text) {
            if (current.text.empty()) {
                current.before = places[index].before;
                currentFrom = index;
            }
            current.text += tree.textOf(node);
            if (current.text.size() > longest.text.size()) {
                longest = current;
                longestFrom = currentFrom;
            }
        } else if (node.kind == Kind::Sequence || (node.kind == Kind::Group && !hasAlternatives)) {
            ++index;
            continue;
        } else if (node.kind == Kind::Repetition && node.minimum > 0) {
            endsRun[end] = endsRun[end] || node.maximum > 1;
            ++index;
            continue;
        } else if (lengths[index].maximum > 0) {
            current = {};
        }
        index = end;
    }
    longest.bytesBefore = bytesBefore(tree, longestFrom);
    return longest;
}

} // namespace brisk
