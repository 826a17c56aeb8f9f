#include "tools/titles/KeyCosts.h"

#include "tools/titles/KeyHabits.h"

#include "pattern/PatternCost.h"
#include "pattern/PatternLengths.h"

namespace brisk::workbench {

namespace {

bool isOfBlanks(const ByteSet& bytes) {
    return (bytes & ~bytesOfClassEscape('s')).none();
}

// Whether the repetitions at both ends of the part take the same bytes.
bool areAlike(const PatternTree& tree, const PatternSpan& span) {
    const auto first = firstBytesOf(tree, lengthsOf(tree));
    std::optional<ByteSet> front;
    std::optional<ByteSet> back;
    for (std::size_t index = 0; index < tree.nodes.size(); ++index) {
        const PatternNode& node = tree.nodes[index];
        if (node.kind == PatternNode::Kind::Repetition) {
            front = node.span.begin == span.begin ? first[index] : front;
            back = node.span.end == span.end ? first[index] : back;
        }
    }
    return front == back;
}

// Words are short in every file, and so are blanks in front of something else that may begin with one.
bool isShort(const PatternTree& tree, const PatternCost& cost) {
    constexpr std::size_t kFewBytes = 64;
    return (cost.kind == PatternCost::Kind::Leading && cost.bytes.count() < kFewBytes) ||
           (cost.kind == PatternCost::Kind::Adjacent && isOfBlanks(cost.bytes) && !areAlike(tree, cost.span));
}

const char* messageOf(PatternCost::Kind kind) {
    switch (kind) {
    case PatternCost::Kind::Ambiguous:
        return "the rounds of this repetition can take the same text in several ways: the search may be given up, and "
               "then the service ends";
    case PatternCost::Kind::Adjacent:
        return "these two repetitions can take the same text: a search costs the square of it; one of them is enough";
    case PatternCost::Kind::Leading:
        break;
    }
    return "a key that begins with \"anything\" changes the settings behind the first one, too, and a search may be "
           "tried at every place of the file; leave it away or put '^' in front";
}

} // namespace

std::vector<KeyFinding> findCosts(const PatternTree& tree) {
    std::vector<KeyFinding> found;
    const std::vector<PatternCost> costs = costsOf(tree);
    for (const PatternCost& cost : costs) {
        if (!isShort(tree, cost)) {
            const bool isEndless = cost.kind == PatternCost::Kind::Ambiguous;
            found.push_back(
                {isEndless ? Severity::Error : Severity::Warning, "pattern-cost", cost.span, messageOf(cost.kind)});
        }
    }
    for (const PatternSpan& span : costs.empty() ? repeatedScans(tree) : std::vector<PatternSpan>()) {
        found.push_back({Severity::Warning, "pattern-cost", span,
                         "a search may run over the same part of the file again and again from here, and costs the "
                         "square of its size; say what may not come, as [^\\\\[]*, or begin with ^[\\\\s\\\\S]*?"});
    }
    return found;
}

} // namespace brisk::workbench
