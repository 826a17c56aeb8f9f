#include "tools/titles/KeyAnalysis.h"

#include "tools/titles/KeyCosts.h"
#include "tools/titles/KeyGrammar.h"
#include "tools/titles/KeyHabits.h"

#include "pattern/NumberReading.h"
#include "pattern/PatternAnalysis.h"
#include "pattern/PatternLengths.h"
#include "pattern/PatternSearchHints.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace brisk::workbench {

namespace {

constexpr std::size_t kValueGroup = 2;

// One key of a setting.
class KeyChecks {
public:
    KeyChecks(std::size_t size, std::vector<KeyFinding>& output) : keySize(size), found(output) {}

    void checkReading(const PatternTree& tree, KeyRole role) {
        if (tree.groupCount < kValueGroup) {
            addWhole(Severity::Error, "pattern-groups",
                     "without a second group there is no value: a key has three, (the text before)(the value)(the text "
                     "behind)");
        }
        checkAnchors(tree, role);
        checkBeginning(tree, role);
        for (const PatternSpan& span : namesBehindAnything(tree, kValueGroup)) {
            add(Severity::Warning, "pattern-unanchored", span,
                "the part in front may end in the middle of a longer name "
                "(\"MaxWidth=\" for \"Width=\"); put \\\\n or \\\\b in front of the name");
        }
        if (const auto span = neededCarriageReturn(tree)) {
            add(Severity::Error, "carriage-return", *span,
                "a line ends in \\n, whatever the file has: \\r\\n is read as \\n, so this never matches; leave \\r "
                "away");
        }
        std::vector<PatternSpan> greedy = greedyBefore(tree, kValueGroup);
        for (const PatternSpan& span : greedyToLast(tree, kValueGroup)) {
            if (std::find(greedy.begin(), greedy.end(), span) == greedy.end()) {
                add(Severity::Warning, "pattern-greedy", span,
                    "this takes as much as it can: the last place on the line, or in the file, that fits what follows; "
                    "say what may not come, as [^>]*, or make it lazy with a '?'");
            }
        }
        for (const PatternSpan& span : greedy) {
            add(Severity::Warning, "pattern-greedy", span,
                "this takes as much as it can and leaves the value the least: the last setting on the line, or the "
                "last digit; say what may not come, as [^\\n]*?, or make it lazy with a '?'");
        }
        if (canMatchNothingAnywhere(tree)) {
            addWhole(Severity::Error, "pattern-empty",
                     "this can match the empty text, which stands between any two characters");
        }
        std::vector<KeyFinding> costs = findCosts(tree);
        std::move(costs.begin(), costs.end(), std::back_inserter(found));
    }

    void checkNumber(const PatternTree& tree) {
        if (canLackDigits(tree, kValueGroup)) {
            const auto span = spanOfGroup(tree, kValueGroup);
            add(Severity::Error, "pattern-no-number", span ? *span : PatternSpan{0, keySize},
                "the value is read as a number, but this can match a text without digits, and then the service ends; "
                "write (\\\\d+) or (-?\\\\d+)");
        }
    }

    void checkWriting(const PatternTree& tree) {
        if (tree.groupCount == kValueGroup) {
            addWhole(Severity::Error, "pattern-groups",
                     "a third group is missing; where nothing needs to follow the value, write () at the end");
        } else if (tree.groupCount > 2 && contains(*spanOfGroup(tree, kValueGroup), *spanOfGroup(tree, 3))) {
            add(Severity::Error, "pattern-groups", *spanOfGroup(tree, 3),
                "groups count by their opening brackets: this one, inside of the value, is the third, and what it "
                "holds is written a second time behind the new value; a group that is not to count is (?:...)");
        } else if (tree.groupCount > 3) {
            const PatternSpan fourth = *spanOfGroup(tree, 4);
            if (!isInside(tree, fourth)) {
                add(Severity::Error, "pattern-groups", fourth,
                    "only groups 1, 2 and 3 are written back, so what this one holds is lost; a group that is not to "
                    "count is (?:...)");
            }
        }
        if (tree.groupCount >= kValueGroup && contains(*spanOfGroup(tree, 1), *spanOfGroup(tree, kValueGroup))) {
            add(Severity::Error, "pattern-groups", *spanOfGroup(tree, kValueGroup),
                "groups count by their opening brackets: this one is the value; a group that is not to count is "
                "(?:...)");
        }
        for (const PatternSpan& span : textOutsideGroups(tree)) {
            add(Severity::Error, "pattern-lost-text", span,
                "this stands in no group, so the text that it matches is deleted; put it into the first or the third "
                "group");
        }
    }

    // The place at which a missing setting is created.
    void checkPlaceOfCreation(const PatternTree& tree) {
        const auto span = spanOfGroup(tree, kValueGroup);
        if (span && span->end - span->begin > 2) {
            add(Severity::Note, "created-over-text", *span,
                "the created text takes the place of what this matches; to put it between the two others, leave the "
                "group empty: ()");
        }
    }

private:
    static bool contains(const PatternSpan& outer, const PatternSpan& inner) {
        return outer.begin < inner.begin && inner.end < outer.end;
    }

    static bool isInside(const PatternTree& tree, const PatternSpan& span) {
        for (std::size_t group = 1; group <= 3; ++group) {
            if (contains(*spanOfGroup(tree, group), span)) {
                return true;
            }
        }
        return false;
    }

    void add(Severity severity, const char* rule, const PatternSpan& span, std::string message) {
        found.push_back({severity, rule, span, std::move(message)});
    }
    void addWhole(Severity severity, const char* rule, std::string message) {
        found.push_back({severity, rule, std::nullopt, std::move(message)});
    }

    void checkAnchors(const PatternTree& tree, KeyRole role) {
        const std::vector<PatternSpan> impossible = assertionsWithinText(tree);
        for (const PatternSpan& span : impossible) {
            add(Severity::Error, "pattern-line-anchor", span,
                "'^' and '$' are the ends of the whole text, not of a line, and can never be here; a line begins with "
                "(?:^|\\\\n) and ends before (?=\\\\n|$)");
        }
        if (!impossible.empty()) {
            return;
        }
        // A condition may well ask how the file begins.
        const bool isCondition = role == KeyRole::Condition || role == KeyRole::NumericCondition;
        for (const PatternSpan& span : isCondition ? std::vector<PatternSpan>() : lineBeginsMeant(tree)) {
            add(Severity::Warning, "pattern-line-anchor", span,
                "'^' is the beginning of the whole text, not of a line; a line begins with (?:^|\\\\n)");
        }
        // A place of creation may well be the file's end.
        if (role == KeyRole::Creation) {
            return;
        }
        for (const PatternNode& node : tree.nodes) {
            if (node.kind == PatternNode::Kind::TextEnd &&
                !isAlternative(tree, static_cast<std::size_t>(&node - tree.nodes.data()))) {
                add(Severity::Warning, "pattern-line-anchor", node.span,
                    "'$' is the end of the whole text, not of a line; a line ends before (?=\\\\n|$)");
            }
        }
    }

    // A name at the very beginning is found at the end of longer names as well. Two words, as in "seta r_mode", are
    // anchor enough.
    void checkBeginning(const PatternTree& tree, KeyRole role) {
        const PatternBeginning beginning = beginningOf(tree);
        std::size_t wordBytes = 0;
        for (std::size_t byte = 0; byte < beginning.unguarded.size(); ++byte) {
            wordBytes += beginning.unguarded[byte] && isWordByte(static_cast<char>(byte)) ? 1U : 0U;
        }
        if (wordBytes == 0 || beginning.unguarded.count() > 128) {
            return;
        }
        const NeededText needed = neededText(tree);
        if (needed.before == PatternLengths{0, 0}) {
            const auto nameEnd = std::find_if_not(needed.text.begin(), needed.text.end(), isWordByte);
            const auto next =
                std::find_if(nameEnd, needed.text.end(), [](char byte) { return byte != ' ' && byte != '\t'; });
            if (next != nameEnd && next != needed.text.end() && isWordByte(*next)) {
                return;
            }
        }
        addWhole(Severity::Warning, "pattern-unanchored",
                 std::string("nothing stands before the name, so longer names that end in it are ") +
                     (role == KeyRole::Condition || role == KeyRole::NumericCondition ? "found" : "changed") +
                     ", too (\"Width=\" in \"MaxWidth=\"); begin with (?:^|\\\\n) or \\\\b");
    }

    std::size_t keySize;
    std::vector<KeyFinding>& found;
};

} // namespace

std::vector<KeyFinding> analyseKey(const std::string& key, KeyRole role) {
    std::vector<KeyFinding> found;
    if (const auto tree = readKey(key, found)) {
        KeyChecks checks(key.size(), found);
        checks.checkReading(*tree, role);
        if (role != KeyRole::Condition && role != KeyRole::NumericCondition) {
            checks.checkWriting(*tree);
        }
        if (role == KeyRole::NumericCondition || role == KeyRole::NumericSetting) {
            checks.checkNumber(*tree);
        }
        if (role == KeyRole::Creation) {
            checks.checkPlaceOfCreation(*tree);
        }
    }
    return found;
}

} // namespace brisk::workbench
