#include "tools/titles/KeyHabits.h"

#include "pattern/PatternLengths.h"

#include <algorithm>

namespace brisk::workbench {

namespace {

using Kind = PatternNode::Kind;

bool isLookahead(Kind kind) {
    return kind == Kind::Lookahead || kind == Kind::NegativeLookahead;
}

// Something that steps over text: bytes, a set, or such a thing repeated.
struct Step {
    PatternSpan span;
    ByteSet first;         // a byte of it; of a text the first one
    std::string_view text; // of a text
    bool isNeeded;         // in every match, at least once
    bool isEndless;
    bool isLazy;
    bool isTempered; // its rounds look ahead
};

// The steps of a pattern from front to back, without those inside of lookaheads.
std::vector<Step> stepsOf(const PatternTree& tree) {
    const auto lengths = lengthsOf(tree);
    const auto first = firstBytesOf(tree, lengths);
    std::vector<bool> isOptional(tree.nodes.size());
    std::vector<Step> steps;
    for (std::size_t index = 0; index < tree.nodes.size();) {
        const PatternNode& node = tree.nodes[index];
        if (isLookahead(node.kind)) {
            index += node.size;
            continue;
        }
        const bool isChoice = node.kind == Kind::Group && tree.childCount(index) > 1;
        const bool canBeAbsent = node.kind == Kind::Repetition && node.minimum == 0;
        tree.forEachChild(index,
                          [&](std::size_t child) { isOptional[child] = isOptional[index] || isChoice || canBeAbsent; });
        const bool isOfBytes = node.kind == Kind::Repetition && lengths[index + 1] == PatternLengths{1, 1};
        if (isOfBytes || node.kind == Kind::Text || node.kind == Kind::Set) {
            const auto begin = tree.nodes.begin() + static_cast<std::ptrdiff_t>(index);
            steps.push_back({node.span, first[index], node.kind == Kind::Text ? tree.textOf(node) : std::string_view(),
                             !isOptional[index] && !canBeAbsent,
                             node.kind == Kind::Repetition && node.maximum == PatternNode::kUnbounded, node.isLazy,
                             std::any_of(begin, begin + static_cast<std::ptrdiff_t>(node.size),
                                         [](const PatternNode& inner) { return isLookahead(inner.kind); })});
            index += node.size;
        } else {
            ++index;
        }
    }
    return steps;
}

bool canTake(const Step& taker, const Step& other) {
    return other.text.empty() ? (taker.first & other.first).any()
                              : std::all_of(other.text.begin(), other.text.end(), [&taker](char byte) {
                                    return taker.first[static_cast<unsigned char>(byte)];
                                });
}

// Goes on for as long as it likes, over the ends of lines.
bool crossesLines(const Step& step) {
    constexpr std::size_t kAlmostAll = 200;
    return step.isEndless && !step.isTempered && step.first['\n'] && step.first.count() >= kAlmostAll;
}

// For each node whether all of its matches hold the condition, which is given for texts and sets.
template <typename Condition>
std::vector<bool> everywhere(const PatternTree& tree, const Condition& isLeafRight) {
    std::vector<bool> holds(tree.nodes.size());
    for (std::size_t index = tree.nodes.size(); index-- > 0;) {
        const PatternNode& node = tree.nodes[index];
        const PatternTree::Spread children = tree.amongChildren(index, holds);
        if (node.kind == Kind::Text || node.kind == Kind::Set) {
            holds[index] = isLeafRight(node);
        } else if (node.kind == Kind::Repetition) {
            holds[index] = node.minimum > 0 && children.any;
        } else if (node.kind == Kind::Group || node.kind == Kind::Lookahead) {
            holds[index] = children.all;
        } else {
            holds[index] = node.kind == Kind::Sequence && children.any;
        }
    }
    return holds;
}

// The steps in front of a group; none where there is no such group.
std::vector<Step> stepsBefore(const PatternTree& tree, std::size_t group) {
    std::vector<Step> steps = stepsOf(tree);
    const std::size_t index = tree.indexOfGroup(group);
    const std::size_t begin = index == 0 ? 0 : tree.nodes[index].span.begin;
    steps.erase(std::find_if(steps.begin(), steps.end(), [&](const Step& step) { return step.span.begin >= begin; }),
                steps.end());
    return steps;
}

} // namespace

bool isAlternative(const PatternTree& tree, std::size_t index) {
    bool result = false;
    for (std::size_t outer = 0; outer < index; ++outer) {
        const PatternNode& node = tree.nodes[outer];
        if (index < outer + node.size && (node.kind == Kind::Group || isLookahead(node.kind))) {
            result = tree.childCount(outer) > 1;
        }
    }
    return result;
}

bool canMatchNothingAnywhere(const PatternTree& tree) {
    std::vector<bool> isEmpty(tree.nodes.size());
    for (std::size_t index = tree.nodes.size(); index-- > 0;) {
        const PatternNode& node = tree.nodes[index];
        const PatternTree::Spread children = tree.amongChildren(index, isEmpty);
        switch (node.kind) {
        case Kind::Text:
        case Kind::Set:
        case Kind::TextBegin:
        case Kind::TextEnd:
            break;
        case Kind::Repetition:
            isEmpty[index] = node.minimum == 0 || children.any;
            break;
        case Kind::Group:
        case Kind::Lookahead:
            isEmpty[index] = children.any;
            break;
        case Kind::Sequence:
            isEmpty[index] = children.all;
            break;
        default:
            isEmpty[index] = true;
        }
    }
    return isEmpty.front();
}

std::vector<PatternSpan> lineBeginsMeant(const PatternTree& tree) {
    const std::vector<Step> steps = stepsOf(tree);
    std::vector<PatternSpan> spans;
    for (std::size_t index = 0; index < tree.nodes.size(); ++index) {
        if (tree.nodes[index].kind != Kind::TextBegin || isAlternative(tree, index)) {
            continue;
        }
        const PatternSpan span = tree.nodes[index].span;
        for (auto step = std::find_if(steps.begin(), steps.end(),
                                      [&span](const Step& each) { return each.span.begin >= span.end; });
             step != steps.end(); ++step) {
            if (crossesLines(*step)) {
                break;
            }
            // Blanks without line ends stand in front of a setting on its line.
            bool isLineLike = step->first['['] || (step->first[' '] && !step->first['\n']);
            for (std::size_t byte = 0; byte < step->first.size(); ++byte) {
                isLineLike = isLineLike || (step->first[byte] && isWordByte(static_cast<char>(byte)));
            }
            if (isLineLike) {
                spans.push_back(span);
                break;
            }
            if (step->isNeeded) {
                break;
            }
        }
    }
    return spans;
}

std::vector<PatternSpan> greedyToLast(const PatternTree& tree, std::size_t group) {
    const std::vector<Step> steps = stepsBefore(tree, group);
    std::vector<PatternSpan> spans;
    for (auto step = steps.begin(); step != steps.end(); ++step) {
        if (!step->isEndless || step->isLazy || step->isTempered ||
            (step->first != bytesOfDot() && !step->first.all())) {
            continue;
        }
        const auto isNeeded = [](const Step& next) { return next.isNeeded; };
        const bool canTakeAll = std::all_of(step + 1, steps.end(),
                                            [&](const Step& next) { return !next.isNeeded || canTake(*step, next); });
        if (canTakeAll && std::any_of(step + 1, steps.end(), isNeeded)) {
            spans.push_back(step->span);
        }
    }
    return spans;
}

std::vector<PatternSpan> namesBehindAnything(const PatternTree& tree, std::size_t group) {
    const std::vector<Step> steps = stepsBefore(tree, group);
    const auto last = std::find_if(steps.rbegin(), steps.rend(), crossesLines);
    // Attributes of markup are apart from each other anyway: [^>]*width=" is common, and fine.
    if (last == steps.rbegin() || last == steps.rend() || !last->first['>']) {
        return {};
    }
    const Step& name = *(last.base());
    if (name.span.begin != last->span.end || name.text.empty() || !isWordByte(name.text.front())) {
        return {};
    }
    return {name.span};
}

std::optional<PatternSpan> neededCarriageReturn(const PatternTree& tree) {
    const auto isReturn = [&tree](const PatternNode& node) {
        if (node.kind == Kind::Text) {
            return tree.textOf(node).find('\r') != std::string_view::npos;
        }
        return tree.setOf(node)['\r'] && tree.setOf(node).count() == 1;
    };
    const std::vector<bool> holds = everywhere(tree, isReturn);
    if (!holds.front()) {
        return std::nullopt;
    }
    for (std::size_t index = 0; index < tree.nodes.size(); ++index) {
        const PatternNode& node = tree.nodes[index];
        if (holds[index] && (node.kind == Kind::Text || node.kind == Kind::Set)) {
            return node.span;
        }
    }
    return std::nullopt;
}

std::vector<PatternSpan> repeatedScans(const PatternTree& tree) {
    const std::vector<Step> steps = stepsOf(tree);
    const auto isNeeded = [](const Step& step) { return step.isNeeded; };
    const auto isAnything = [](const Step& step) { return crossesLines(step) && step.first.all(); };
    std::vector<PatternSpan> spans;
    std::vector<const Step*> anything;
    for (auto step = steps.begin(); step != steps.end(); ++step) {
        if (isAnything(*step) && std::any_of(step + 1, steps.end(), isNeeded)) {
            anything.push_back(&*step);
        }
    }
    // From the file's beginning there is one search only.
    const bool isAnchored = std::any_of(tree.nodes.begin(), tree.nodes.end(), [&](const PatternNode& node) {
        return node.kind == Kind::TextBegin &&
               !isAlternative(tree, static_cast<std::size_t>(&node - tree.nodes.data())) &&
               (steps.empty() || node.span.end <= steps.front().span.begin);
    });
    if (anything.size() > (isAnchored ? 2U : 1U)) {
        spans.push_back({anything.front()->span.begin, anything.back()->span.end});
    }
    const auto isBlank = [](const Step& step) {
        constexpr std::string_view kBlanks = " \t\r\n\f\v";
        for (std::size_t byte = 0; byte < step.first.size(); ++byte) {
            if (step.first[byte] && kBlanks.find(static_cast<char>(byte)) == std::string_view::npos) {
                return false;
            }
        }
        return step.text.find_first_not_of(kBlanks) == std::string_view::npos;
    };
    const auto front = std::find_if_not(steps.begin(), steps.end(), isBlank);
    if (!isAnchored && front != steps.begin() && front != steps.end() && crossesLines(*front) &&
        std::any_of(front + 1, steps.end(), isNeeded)) {
        spans.push_back(front->span);
    }
    return spans;
}

std::vector<PatternSpan> letterEscapes(std::string_view pattern) {
    constexpr std::string_view kKnown = "bBcdDfnrsStuvwWx";
    std::vector<PatternSpan> spans;
    for (std::size_t at = 0; at + 1 < pattern.size(); ++at) {
        if (pattern[at] != '\\') {
            continue;
        }
        const char letter = pattern[++at];
        const bool isLetter = (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
        if (isLetter && kKnown.find(letter) == std::string_view::npos) {
            spans.push_back({at - 1, at + 1});
        }
    }
    return spans;
}

} // namespace brisk::workbench
