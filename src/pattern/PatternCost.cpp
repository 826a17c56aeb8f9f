#include "pattern/PatternCost.h"

#include "pattern/AmbiguousRepetitions.h"
#include "pattern/PatternLengths.h"

#include <algorithm>
#include <cstddef>

namespace brisk {

namespace {

using Kind = PatternNode::Kind;

// What a part can begin with, end with and hold.
struct Bytes {
    ByteSet first;
    ByteSet last;
    ByteSet all;
};

Bytes operator|(const Bytes& left, const Bytes& right) {
    return {left.first | right.first, left.last | right.last, left.all | right.all};
}

// Repetitions without end at one edge of a part, one of which is known by name.
struct Edge {
    Bytes round;
    std::size_t repetition = 0;
};

Edge operator|(const Edge& left, const Edge& right) {
    return {left.round | right.round, left.repetition != 0 ? left.repetition : right.repetition};
}

class Costs {
public:
    explicit Costs(const PatternTree& all)
        : tree(all), lengths(lengthsOf(all)), first(firstBytesOf(all, lengths)), bytes(all.nodes.size()),
          begins(all.nodes.size()), ends(all.nodes.size()) {}

    std::vector<PatternCost> find() {
        for (const std::size_t repetition : ambiguousRepetitions(tree)) {
            costs.push_back({PatternCost::Kind::Ambiguous, tree.nodes[repetition].span, first[repetition]});
        }
        for (std::size_t index = tree.nodes.size(); index-- > 0;) {
            findBytes(index);
            findEdges(index);
        }
        findLeading();
        std::stable_sort(costs.begin(), costs.end(), [](const PatternCost& left, const PatternCost& right) {
            return left.span.begin < right.span.begin;
        });
        return std::move(costs);
    }

private:
    void findBytes(std::size_t index) {
        const PatternNode& node = tree.nodes[index];
        Bytes& own = bytes[index];
        own.first = first[index];
        if (node.kind == Kind::Text) {
            for (const char byte : tree.textOf(node)) {
                own.all.set(static_cast<unsigned char>(byte));
            }
            own.last.set(static_cast<unsigned char>(tree.textOf(node).back()));
        } else if (node.kind == Kind::Set || node.kind == Kind::BackReference) {
            own = {first[index], first[index], first[index]};
        } else if (node.kind == Kind::Group || node.kind == Kind::Sequence || node.kind == Kind::Repetition) {
            tree.forEachChild(index, [&](std::size_t child) {
                const bool isEnd = node.kind == Kind::Sequence && lengths[child].minimum > 0;
                own.last = isEnd ? bytes[child].last : own.last | bytes[child].last;
                own.all |= bytes[child].all;
            });
        }
    }

    void findEdges(std::size_t index) {
        const PatternNode& node = tree.nodes[index];
        Edge& begin = begins[index];
        Edge& end = ends[index];
        if (node.kind == Kind::Repetition) {
            begin = begins[index + 1];
            end = ends[index + 1];
            if (node.maximum == PatternNode::kUnbounded) {
                begin = Edge{bytes[index], index} | begin;
                end = Edge{bytes[index], index} | end;
            } else if (node.maximum > 1) {
                meet(end, begin);
            }
        } else if (node.kind == Kind::Group) {
            tree.forEachChild(index, [&](std::size_t child) {
                begin = begin | begins[child];
                end = end | ends[child];
            });
        } else if (node.kind == Kind::Sequence) {
            bool isBegin = true;
            tree.forEachChild(index, [&](std::size_t child) {
                meet(end, begins[child]);
                begin = isBegin ? begin | begins[child] : begin;
                isBegin = isBegin && lengths[child].minimum == 0;
                end = lengths[child].minimum == 0 ? ends[child] | end : ends[child];
            });
        }
    }

    // A text can be parted in several ways where some rounds on the left may as well be some on the right: those begin
    // with the same byte, and the right ones hold the last byte, too.
    void meet(const Edge& left, const Edge& right) {
        const ByteSet both = left.round.first & right.round.first;
        if (both.any() && (left.round.last & right.round.all).any()) {
            const PatternSpan& one = tree.nodes[left.repetition].span;
            const PatternSpan& other = tree.nodes[right.repetition].span;
            costs.push_back(
                {PatternCost::Kind::Adjacent, {std::min(one.begin, other.begin), std::max(one.end, other.end)}, both});
        }
    }

    // Nothing before but what can be empty, and no ^.
    void findLeading() {
        std::vector<bool> isFront(tree.nodes.size());
        isFront[0] = canFail();
        std::vector<bool> opens(tree.nodes.size());
        for (std::size_t index = tree.nodes.size(); index-- > 0;) {
            opens[index] = canPass(index, opens);
        }
        for (std::size_t index = 0; index < tree.nodes.size();) {
            const PatternNode& node = tree.nodes[index];
            if (isFront[index] && node.kind == Kind::Repetition && node.maximum == PatternNode::kUnbounded) {
                costs.push_back({PatternCost::Kind::Leading, node.span, first[index]});
                index += node.size;
                continue;
            }
            bool isChildFront = isFront[index];
            tree.forEachChild(index, [&](std::size_t child) {
                isFront[child] = isChildFront;
                isChildFront = isChildFront && (node.kind != Kind::Sequence || opens[child]);
            });
            ++index;
        }
    }

    // Whether a part can be empty without a ^ that holds.
    bool canPass(std::size_t index, const std::vector<bool>& opens) const {
        const PatternNode& node = tree.nodes[index];
        const PatternTree::Spread children = tree.amongChildren(index, opens);
        switch (node.kind) {
        case Kind::Text:
        case Kind::Set:
        case Kind::TextBegin:
            return false;
        case Kind::Repetition:
            return node.minimum == 0 || children.any;
        case Kind::Group:
            return children.any;
        case Kind::Sequence:
            return children.all;
        default:
            return true;
        }
    }

    // Whether anything but the first repetition decides about a match.
    bool canFail() const {
        std::size_t steps = 0;
        for (const PatternNode& node : tree.nodes) {
            const bool isStep =
                node.kind != Kind::Group && node.kind != Kind::Sequence && node.kind != Kind::Repetition;
            steps += isStep ? 1 : 0;
        }
        return steps > 1;
    }

    const PatternTree& tree;
    const std::vector<PatternLengths> lengths;
    const std::vector<ByteSet> first;
    std::vector<Bytes> bytes;
    std::vector<Edge> begins;
    std::vector<Edge> ends;
    std::vector<PatternCost> costs;
};

} // namespace

std::vector<PatternCost> costsOf(const PatternTree& tree) {
    return Costs(tree).find();
}

} // namespace brisk
