#include "tools/titles/PatternRules.h"

#include "tools/titles/CreationTrial.h"
#include "tools/titles/JsonText.h"
#include "tools/titles/TitleParts.h"

#include "pattern/NumberReading.h"
#include "pattern/PatternAnalysis.h"
#include "pattern/PatternCost.h"
#include "pattern/PatternError.h"
#include "pattern/PatternSearchHints.h"

#include <algorithm>
#include <optional>

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

// One key of a setting, with where its bytes stand in the database.
class KeyChecks {
public:
    KeyChecks(std::string_view json, const JsonValue& text, Report& output) : source(json), key(text), report(output) {}

    // What holds for every key; nothing when it does not follow the grammar.
    std::optional<PatternTree> checkGrammar() {
        checkControlCharacters();
        try {
            return parsePattern(key.text());
        } catch (const PatternError& error) {
            const std::size_t place = placeInText(source, key, error.offset());
            report.add(Severity::Error, "pattern-syntax", place, place + 1,
                       messageOf(error) + "; the service ends when it looks at this title");
        }
        return std::nullopt;
    }

    void checkReading(const PatternTree& tree) {
        if (tree.groupCount < kValueGroup) {
            report.add(
                Severity::Error, "pattern-groups", key,
                "without a second group there is no value: a key has three, (the text before)(the value)(the text "
                "behind)");
        }
        checkAnchors(tree);
        checkBeginning(tree);
        for (const PatternSpan& span : greedyBefore(tree, kValueGroup)) {
            add(Severity::Warning, "pattern-greedy", span,
                "this takes as much as it can and leaves the value the least: the last setting on the line, or the "
                "last "
                "digit; say what may not come, as [^\\n]*?, or make it lazy with a '?'");
        }
        if (canMatchNothing(tree)) {
            report.add(Severity::Error, "pattern-empty", key,
                       "this can match the empty text, which stands between any two characters");
        }
        for (const PatternCost& cost : costsOf(tree)) {
            checkCost(cost);
        }
    }

    void checkNumber(const PatternTree& tree) {
        if (canLackDigits(tree, kValueGroup)) {
            const auto span = spanOfGroup(tree, kValueGroup);
            add(Severity::Error, "pattern-no-number", span ? *span : PatternSpan{0, key.text().size()},
                "the value is read as a number, but this can match a text without digits, and then the service ends; "
                "write "
                "(\\\\d+) or (-?\\\\d+)");
        }
    }

    void checkWriting(const PatternTree& tree) {
        if (tree.groupCount == kValueGroup) {
            report.add(Severity::Error, "pattern-groups", key,
                       "a third group is missing; where nothing needs to follow the value, write () at the end");
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
            add(Severity::Warning, "created-over-text", *span,
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
        const std::size_t begin = placeInText(source, key, span.begin);
        report.add(severity, rule, begin, std::max(begin + 1, placeInText(source, key, span.end)), std::move(message));
    }

    void checkControlCharacters() {
        const std::string& text = key.text();
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

    void checkAnchors(const PatternTree& tree) {
        const std::vector<PatternSpan> impossible = assertionsWithinText(tree);
        for (const PatternSpan& span : impossible) {
            add(Severity::Error, "pattern-line-anchor", span,
                "'^' and '$' are the ends of the whole text, not of a line, and can never be here; a line begins with "
                "(?:^|\\\\n) and ends before (?=\\\\n|$)");
        }
        if (!impossible.empty()) {
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
    void checkBeginning(const PatternTree& tree) {
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
        report.add(Severity::Warning, "pattern-unanchored", key,
                   "nothing stands before the name, so longer names that end in it are changed, too (\"Width=\" in "
                   "\"MaxWidth=\"); begin with (?:^|\\\\n) or \\\\b");
    }

    void checkCost(const PatternCost& cost) {
        // Blanks and words are short in every file.
        constexpr std::size_t kFewBytes = 64;
        if (cost.kind != PatternCost::Kind::ambiguous && cost.bytes.count() < kFewBytes) {
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

    std::string_view source;
    const JsonValue& key;
    Report& report;
};

bool isNumeric(const JsonValue& field) {
    const JsonValue* value = findText(field, "value");
    return !value || value->text().empty();
}

void checkField(std::string_view source, const JsonValue& field, Report& report) {
    if (const JsonValue* key = findText(field, "key")) {
        KeyChecks checks(source, *key, report);
        if (const auto tree = checks.checkGrammar()) {
            checks.checkReading(*tree);
            checks.checkWriting(*tree);
            if (isNumeric(field)) {
                checks.checkNumber(*tree);
            }
        }
    }
    const JsonValue* createKey = findText(field, "create_key");
    if (!createKey || createKey->text().empty()) {
        return;
    }
    KeyChecks checks(source, *createKey, report);
    if (const auto tree = checks.checkGrammar()) {
        checks.checkReading(*tree);
        checks.checkWriting(*tree);
        checks.checkPlaceOfCreation(*tree);
        if (const auto found = tryCreation(field, *tree)) {
            report.add(Severity::Error, "created-not-found", *findText(field, "create_value"),
                       "the setting's own key does not find what is created (" + *found +
                           "), so it is created again with every pass");
        }
    }
}

void checkCondition(std::string_view source, const JsonValue& condition, Report& report) {
    const JsonValue* key = findText(condition, "key");
    if (!key) {
        return;
    }
    KeyChecks checks(source, *key, report);
    const auto tree = checks.checkGrammar();
    if (!tree) {
        return;
    }
    checks.checkReading(*tree);
    const JsonValue* presence = findArray(condition, "presence");
    if (presence && std::any_of(presence->items.begin(), presence->items.end(),
                                [](const JsonValue& allowed) { return allowed.isNumber(); })) {
        checks.checkNumber(*tree);
    }
}

} // namespace

void checkPatterns(std::string_view source, const JsonValue& title, Report& report) {
    if (isRegistryTitle(title)) {
        return;
    }
    for (const JsonValue* field : findFields(title)) {
        checkField(source, *field, report);
    }
    for (const JsonValue* condition : findConditions(title)) {
        checkCondition(source, *condition, report);
    }
}

} // namespace brisk::workbench
