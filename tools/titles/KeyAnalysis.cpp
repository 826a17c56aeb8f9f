#include "tools/titles/KeyAnalysis.h"

#include "tools/titles/KeyHabits.h"

#include "pattern/NumberReading.h"
#include "pattern/PatternAnalysis.h"
#include "pattern/PatternCost.h"
#include "pattern/PatternError.h"
#include "pattern/PatternLengths.h"
#include "pattern/PatternSearchHints.h"

#include <algorithm>
#include <utility>

namespace brisk::workbench {

namespace {

constexpr std::size_t kValueGroup = 2;

bool isWordByte(unsigned char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') || byte == '_';
}

std::string messageOf(const PatternError& error) {
    namespace codes = std::regex_constants;
    const auto code = error.code();
    if (code == codes::error_paren) {
        return "a bracket '(' or ')' has no counterpart here";
    }
    if (code == codes::error_brack) {
        return "this '[' is never closed";
    }
    if (code == codes::error_badrepeat) {
        return "nothing stands before this that could be repeated; a literal '*', '+', '?' or '{' is written with two "
               "backslashes";
    }
    if (code == codes::error_brace || code == codes::error_badbrace) {
        return "a count is written {2}, {2,} or {2,5}; a literal '{' is written with two backslashes";
    }
    if (code == codes::error_escape) {
        return "there is no such escape";
    }
    if (code == codes::error_backref) {
        return "there is no such group to refer to, or it is not complete yet";
    }
    if (code == codes::error_ctype) {
        return "there is no class of this name";
    }
    if (code == codes::error_collate) {
        return "there is no character of this name";
    }
    if (code == codes::error_range) {
        return "the ends of this range are the wrong way round";
    }
    return "the expression is too complex";
}

// What an expression of another dialect says at the place of a fault; nothing where it says nothing known.
std::string foreignConstruct(std::string_view pattern, std::size_t offset) {
    const std::size_t question = pattern.find("(?", offset < 2 ? 0 : offset - 2);
    if (question == std::string_view::npos || question > offset) {
        return {};
    }
    const std::string_view rest = pattern.substr(question + 2);
    if (rest.starts_with("<=") || rest.starts_with("<!")) {
        return "there is no lookbehind; put what must stand in front into the first group";
    }
    if (rest.starts_with('<') || rest.starts_with("P<") || rest.starts_with('\'')) {
        return "groups have no names, only numbers";
    }
    if (rest.starts_with('>')) {
        return "there are no atomic groups";
    }
    if (!rest.empty() && std::string_view("imsxuU-").find(rest.front()) != std::string_view::npos) {
        return "there are no options such as (?i); letter case matters, and a letter of either case is [Aa]";
    }
    return "there is no such group; one that does not count is (?:...)";
}

// One key of a setting.
class KeyChecks {
public:
    explicit KeyChecks(const std::string& text) : key(text) {}

    std::vector<KeyFinding> found;

    // What holds for every key; nothing when it does not follow the grammar.
    std::optional<PatternTree> checkGrammar() {
        checkControlCharacters();
        try {
            PatternTree tree = parsePattern(key);
            for (const PatternSpan& span : letterEscapes(key)) {
                add(Severity::Warning, "pattern-letter-escape", span,
                    "there is no escape '" + key.substr(span.begin, 2) + "': it stands for the letter '" +
                        key[span.begin + 1] + "'");
            }
            return tree;
        } catch (const PatternError& error) {
            const std::string foreign = foreignConstruct(key, error.offset());
            add(Severity::Error, "pattern-syntax", {error.offset(), error.offset() + 1},
                (foreign.empty() ? messageOf(error) : foreign) + "; the service ends when it looks at this title");
        }
        return std::nullopt;
    }

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
                "last "
                "digit; say what may not come, as [^\\n]*?, or make it lazy with a '?'");
        }
        if (canMatchNothingAnywhere(tree)) {
            addWhole(Severity::Error, "pattern-empty",
                     "this can match the empty text, which stands between any two characters");
        }
        const std::vector<PatternCost> costs = costsOf(tree);
        for (const PatternCost& cost : costs) {
            checkCost(tree, cost);
        }
        const std::vector<PatternSpan> scans = costs.empty() ? repeatedScans(tree) : std::vector<PatternSpan>();
        for (const PatternSpan& span : scans) {
            add(Severity::Warning, "pattern-cost", span,
                "a search may run over the same part of the file again and again from here, and costs the square of "
                "its "
                "size; say what may not come, as [^\\\\[]*, or begin with ^[\\\\s\\\\S]*?");
        }
    }

    void checkNumber(const PatternTree& tree) {
        if (canLackDigits(tree, kValueGroup)) {
            const auto span = spanOfGroup(tree, kValueGroup);
            add(Severity::Error, "pattern-no-number", span ? *span : PatternSpan{0, key.size()},
                "the value is read as a number, but this can match a text without digits, and then the service ends; "
                "write "
                "(\\\\d+) or (-?\\\\d+)");
        }
    }

    void checkWriting(const PatternTree& tree) {
        if (tree.groupCount == kValueGroup) {
            addWhole(Severity::Error, "pattern-groups",
                     "a third group is missing; where nothing needs to follow the value, write () at the end");
        } else if (tree.groupCount > 2 && contains(*spanOfGroup(tree, kValueGroup), *spanOfGroup(tree, 3))) {
            add(Severity::Error, "pattern-groups", *spanOfGroup(tree, 3),
                "groups count by their opening brackets: this one, inside of the value, is the third, and what it "
                "holds "
                "is written a second time behind the new value; a group that is not to count is (?:...)");
        } else if (tree.groupCount > 3) {
            const PatternSpan fourth = *spanOfGroup(tree, 4);
            if (!isInside(tree, fourth)) {
                add(Severity::Error, "pattern-groups", fourth,
                    "only groups 1, 2 and 3 are written back, so what this one holds is lost; a group that is not to "
                    "count is "
                    "(?:...)");
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
                "group "
                "empty: ()");
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

    void checkControlCharacters() {
        const std::string& text = key;
        for (std::size_t at = 0; at < text.size(); ++at) {
            const auto byte = static_cast<unsigned char>(text[at]);
            if (byte >= 0x20) {
                continue;
            }
            if (byte == '\b') {
                add(Severity::Error, "pattern-control-character", {at, at + 1},
                    "\"\\b\" is the backspace character; a word's boundary is written \"\\\\b\"");
            } else {
                add(Severity::Note, "pattern-control-character", {at, at + 1},
                    "a control character: in an expression every backslash is written twice, as \"\\\\n\"");
            }
            return;
        }
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
        const bool isCondition = role == KeyRole::condition || role == KeyRole::numericCondition;
        for (const PatternSpan& span : isCondition ? std::vector<PatternSpan>() : lineBeginsMeant(tree)) {
            add(Severity::Warning, "pattern-line-anchor", span,
                "'^' is the beginning of the whole text, not of a line; a line begins with (?:^|\\\\n)");
        }
        // A place of creation may well be the file's end.
        if (role == KeyRole::creation) {
            return;
        }
        for (const PatternNode& node : tree.nodes) {
            if (node.kind == PatternNode::Kind::textEnd && !isAlternative(tree, node)) {
                add(Severity::Warning, "pattern-line-anchor", node.span,
                    "'$' is the end of the whole text, not of a line; a line ends before (?=\\\\n|$)");
            }
        }
    }

    // Whether the node is one of several alternatives of a group or lookahead.
    static bool isAlternative(const PatternTree& tree, const PatternNode& node) {
        const PatternNode* owner = nullptr;
        for (const PatternNode& candidate : tree.nodes) {
            if (candidate.kind >= PatternNode::Kind::group && candidate.kind <= PatternNode::Kind::negativeLookahead &&
                candidate.span.begin <= node.span.begin && node.span.end <= candidate.span.end) {
                owner = &candidate;
            }
        }
        if (!owner) {
            return false;
        }
        const std::size_t index = static_cast<std::size_t>(owner - tree.nodes.data());
        std::size_t alternatives = 0;
        for (std::size_t child = index + 1; child < index + owner->size; child += tree.nodes[child].size) {
            ++alternatives;
        }
        return alternatives > 1;
    }

    // A name at the very beginning is found at the end of longer names as well. Two words, as in "seta r_mode", are
    // anchor enough.
    void checkBeginning(const PatternTree& tree, KeyRole role) {
        const PatternBeginning beginning = beginningOf(tree);
        std::size_t wordBytes = 0;
        for (std::size_t byte = 0; byte < beginning.unguarded.size(); ++byte) {
            wordBytes += beginning.unguarded[byte] && isWordByte(static_cast<unsigned char>(byte)) ? 1U : 0U;
        }
        if (wordBytes == 0 || beginning.unguarded.count() > 128) {
            return;
        }
        const NeededText needed = neededText(tree);
        if (needed.before == PatternLengths{0, 0}) {
            const auto isWord = [](char byte) { return isWordByte(static_cast<unsigned char>(byte)); };
            const auto nameEnd = std::find_if_not(needed.text.begin(), needed.text.end(), isWord);
            const auto next =
                std::find_if(nameEnd, needed.text.end(), [](char byte) { return byte != ' ' && byte != '\t'; });
            if (next != nameEnd && next != needed.text.end() && isWord(*next)) {
                return;
            }
        }
        addWhole(Severity::Warning, "pattern-unanchored",
                 std::string("nothing stands before the name, so longer names that end in it are ") +
                     (role == KeyRole::condition || role == KeyRole::numericCondition ? "found" : "changed") +
                     ", too (\"Width=\" in \"MaxWidth=\"); begin with (?:^|\\\\n) or \\\\b");
    }

    static bool isOfBlanks(const ByteSet& bytes) { return (bytes & ~bytesOfClassEscape('s')).none(); }

    // Whether the repetitions at both ends of the part take the same bytes.
    static bool areAlike(const PatternTree& tree, const PatternSpan& span) {
        const auto first = firstBytesOf(tree, lengthsOf(tree));
        std::optional<ByteSet> front;
        std::optional<ByteSet> back;
        for (std::size_t index = 0; index < tree.nodes.size(); ++index) {
            const PatternNode& node = tree.nodes[index];
            if (node.kind == PatternNode::Kind::repetition) {
                front = node.span.begin == span.begin ? first[index] : front;
                back = node.span.end == span.end ? first[index] : back;
            }
        }
        return front == back;
    }

    void checkCost(const PatternTree& tree, const PatternCost& cost) {
        // Words are short in every file, and so are blanks in front of something else that may begin with one.
        constexpr std::size_t kFewBytes = 64;
        if (cost.kind == PatternCost::Kind::leading && cost.bytes.count() < kFewBytes) {
            return;
        }
        if (cost.kind == PatternCost::Kind::adjacent && isOfBlanks(cost.bytes) && !areAlike(tree, cost.span)) {
            return;
        }
        switch (cost.kind) {
        case PatternCost::Kind::ambiguous:
            add(Severity::Error, "pattern-cost", cost.span,
                "the rounds of this repetition can take the same text in several ways: the search may be given up, and "
                "then "
                "the service ends");
            break;
        case PatternCost::Kind::adjacent:
            add(Severity::Warning, "pattern-cost", cost.span,
                "these two repetitions can take the same text: a search costs the square of it; one of them is enough");
            break;
        case PatternCost::Kind::leading:
            add(Severity::Warning, "pattern-cost", cost.span,
                "a key that begins with \"anything\" changes the settings behind the first one, too, and a search may "
                "be "
                "tried at every place of the file; leave it away or put '^' in front");
            break;
        }
    }

    const std::string& key;
};

} // namespace

std::vector<KeyFinding> analyseKey(const std::string& key, KeyRole role) {
    KeyChecks checks(key);
    if (const auto tree = checks.checkGrammar()) {
        checks.checkReading(*tree, role);
        if (role != KeyRole::condition && role != KeyRole::numericCondition) {
            checks.checkWriting(*tree);
        }
        if (role == KeyRole::numericCondition || role == KeyRole::numericSetting) {
            checks.checkNumber(*tree);
        }
        if (role == KeyRole::creation) {
            checks.checkPlaceOfCreation(*tree);
        }
    }
    return std::move(checks.found);
}

} // namespace brisk::workbench
