#include "pattern/PatternAnalysis.h"

#include "pattern/PatternLengths.h"

#include <algorithm>
#include <iterator>

namespace brisk {

namespace {

using Kind = PatternNode::Kind;

std::vector<std::size_t> childrenOf(const PatternTree& tree, std::size_t parent) {
    std::vector<std::size_t> children;
    tree.forEachChild(parent, [&](std::size_t child) { children.push_back(child); });
    return children;
}

// The parts that may stand directly before a node, outermost ones only.
std::vector<std::size_t> partsBefore(const PatternTree& tree, std::size_t node,
                                     const std::vector<PatternLengths>& lengths) {
    std::vector<std::size_t> parts;
    for (std::size_t index = 0; index != node;) {
        const std::vector<std::size_t> children = childrenOf(tree, index);
        const auto around = std::prev(std::upper_bound(children.begin(), children.end(), node));
        for (auto child = children.begin(); tree.nodes[index].kind == Kind::Sequence && child != around; ++child) {
            if (lengths[*child].minimum > 0) {
                parts.clear();
            }
            parts.push_back(*child);
        }
        index = *around;
    }
    return parts;
}

} // namespace

std::optional<PatternSpan> spanOfGroup(const PatternTree& tree, std::size_t number) {
    const std::size_t index = tree.indexOfGroup(number);
    return index == 0 ? std::nullopt : std::optional(tree.nodes[index].span);
}

bool canMatchNothing(const PatternTree& tree) {
    return lengthsOf(tree).front().minimum == 0;
}

std::vector<PatternSpan> textOutsideGroups(const PatternTree& tree) {
    const auto lengths = lengthsOf(tree);
    std::vector<bool> hasGroup(tree.nodes.size());
    for (std::size_t index = tree.nodes.size(); index-- > 0;) {
        hasGroup[index] = tree.nodes[index].number != 0 && tree.nodes[index].kind == Kind::Group;
        tree.forEachChild(index, [&](std::size_t child) { hasGroup[index] = hasGroup[index] || hasGroup[child]; });
    }
    std::vector<PatternSpan> spans;
    for (std::size_t index = 0; index < tree.nodes.size();) {
        const PatternNode& node = tree.nodes[index];
        const bool isCaptured = node.kind == Kind::Group && node.number != 0;
        const bool isRepeated = node.kind == Kind::Repetition && node.maximum > 1;
        if (!isCaptured && lengths[index].maximum > 0 && hasGroup[index] && !isRepeated) {
            ++index;
            continue;
        }
        if (!isCaptured && lengths[index].maximum > 0) {
            if (!spans.empty() && spans.back().end == node.span.begin) {
                spans.back().end = node.span.end;
            } else {
                spans.push_back(node.span);
            }
        }
        index += node.size;
    }
    return spans;
}

std::vector<PatternSpan> assertionsWithinText(const PatternTree& tree) {
    const auto places = placesOf(tree, lengthsOf(tree));
    std::vector<PatternSpan> spans;
    for (std::size_t index = 0; index < tree.nodes.size(); ++index) {
        const Kind kind = tree.nodes[index].kind;
        if ((kind == Kind::TextBegin && places[index].before.minimum > 0) ||
            (kind == Kind::TextEnd && places[index].behind.minimum > 0)) {
            spans.push_back(tree.nodes[index].span);
        }
    }
    return spans;
}

std::vector<PatternSpan> greedyBefore(const PatternTree& tree, std::size_t group) {
    const std::size_t value = tree.indexOfGroup(group);
    if (value == 0) {
        return {};
    }
    const auto lengths = lengthsOf(tree);
    const auto first = firstBytesOf(tree, lengths);
    std::vector<PatternSpan> spans;
    std::vector<std::size_t> parts = partsBefore(tree, value, lengths);
    while (!parts.empty()) {
        const std::size_t index = parts.back();
        const PatternNode& node = tree.nodes[index];
        parts.pop_back();
        if (node.kind == Kind::Lookahead || node.kind == Kind::NegativeLookahead) {
            continue;
        }
        const bool isOfBytes = node.kind == Kind::Repetition && lengths[index + 1] == PatternLengths{1, 1};
        if (isOfBytes && node.maximum == PatternNode::kUnbounded && !node.isLazy &&
            2 * (first[index] & first[value]).count() > first[value].count()) {
            spans.push_back(node.span);
        }
        const std::vector<std::size_t> children = childrenOf(tree, index);
        for (std::size_t last = children.size(); last-- > 0;) {
            parts.push_back(children[last]);
            if (node.kind == Kind::Sequence && lengths[children[last]].minimum > 0) {
                break;
            }
        }
    }
    std::sort(spans.begin(), spans.end(),
              [](const PatternSpan& left, const PatternSpan& right) { return left.begin < right.begin; });
    return spans;
}

} // namespace brisk
