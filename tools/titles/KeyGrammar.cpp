#include "tools/titles/KeyGrammar.h"

#include "tools/titles/KeyHabits.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace brisk::workbench {

namespace {

std::string messageOf(const PatternError& error) {
    namespace codes = std::regex_constants;
    static const std::pair<codes::error_type, const char*> kMessages[] = {
        {codes::error_paren, "a bracket '(' or ')' has no counterpart here"},
        {codes::error_brack, "this '[' is never closed"},
        {codes::error_badrepeat, "nothing stands before this that could be repeated; a literal '*', '+', '?' or '{' is "
                                 "written with two backslashes"},
        {codes::error_brace, "a count is written {2}, {2,} or {2,5}; a literal '{' is written with two backslashes"},
        {codes::error_badbrace, "a count is written {2}, {2,} or {2,5}; a literal '{' is written with two backslashes"},
        {codes::error_escape, "there is no such escape"},
        {codes::error_backref, "there is no such group to refer to, or it is not complete yet"},
        {codes::error_ctype, "there is no class of this name"},
        {codes::error_collate, "there is no character of this name"},
        {codes::error_range, "the ends of this range are the wrong way round"},
    };
    const auto found = std::find_if(std::begin(kMessages), std::end(kMessages),
                                    [&error](const auto& message) { return message.first == error.code(); });
    return found == std::end(kMessages) ? "the expression is too complex" : found->second;
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

// The first one alone: a key written with single backslashes has many.
std::optional<KeyFinding> findControlCharacter(const std::string& key) {
    const auto found =
        std::find_if(key.begin(), key.end(), [](char byte) { return static_cast<unsigned char>(byte) < 0x20; });
    if (found == key.end()) {
        return std::nullopt;
    }
    const auto at = static_cast<std::size_t>(found - key.begin());
    const bool isBackspace = *found == '\b';
    return KeyFinding{
        isBackspace ? Severity::Error : Severity::Note, "pattern-control-character", PatternSpan{at, at + 1},
        isBackspace ? "\"\\b\" is the backspace character; a word's boundary is written \"\\\\b\""
                    : "a control character: in an expression every backslash is written twice, as \"\\\\n\""};
}

} // namespace

std::optional<PatternTree> readKey(const std::string& key, std::vector<KeyFinding>& found) {
    if (auto finding = findControlCharacter(key)) {
        found.push_back(std::move(*finding));
    }
    try {
        PatternTree tree = parsePattern(key);
        for (const PatternSpan& span : letterEscapes(key)) {
            found.push_back({Severity::Warning, "pattern-letter-escape", span,
                             "there is no escape '" + key.substr(span.begin, 2) + "': it stands for the letter '" +
                                 key[span.begin + 1] + "'"});
        }
        return tree;
    } catch (const PatternError& error) {
        const std::string foreign = foreignConstruct(key, error.offset());
        found.push_back(
            {Severity::Error, "pattern-syntax", PatternSpan{error.offset(), error.offset() + 1},
             (foreign.empty() ? messageOf(error) : foreign) + "; the service ends when it looks at this title"});
    }
    return std::nullopt;
}

} // namespace brisk::workbench
