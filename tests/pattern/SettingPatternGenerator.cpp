#include "pattern/SettingPatternGenerator.h"

#include <algorithm>
#include <string_view>

namespace brisk {

namespace {

constexpr int kMaximumDepth = 2;
constexpr int kMaximumLoops = 2;

struct Quantifier {
    const char* text;
    bool mayBeNone;
    bool isLoop;
};

constexpr Quantifier kQuantifiers[] = {
    {"*", true, true},        {"+", false, true},      {"?", true, false},     {"*?", true, true},
    {"+?", false, true},      {"??", true, false},     {"{0,1}", true, false}, {"{0}", true, false},
    {"{1,}", false, true},    {"{1}", false, false},   {"{0,}?", true, true},  {"{2}", false, false},
    {"{1,2}", false, false},  {"{0,2}?", true, false}, {"{2,}", false, true},  {"{2,3}", false, false},
    {"{1,3}?", false, false}, {"{0,3}", true, false},
};

} // namespace

std::string SettingPatternGenerator::pattern() {
    return alternatives(kMaximumDepth).pattern;
}

SettingPatternGenerator::Piece SettingPatternGenerator::alternatives(int depth) {
    const std::vector<int> certainBefore = certainGroups;
    Piece all = sequence(depth);
    while (below(4) == 0) {
        certainGroups = certainBefore;
        const Piece other = sequence(depth);
        certainGroups = certainBefore;
        all = {all.pattern + '|' + other.pattern, all.canBeEmpty || other.canBeEmpty, std::max(all.loops, other.loops)};
    }
    return all;
}

SettingPatternGenerator::Piece SettingPatternGenerator::sequence(int depth) {
    Piece all;
    for (std::size_t terms = below(4); terms > 0; --terms) {
        const Piece next = term(depth);
        all = {all.pattern + next.pattern, all.canBeEmpty && next.canBeEmpty, std::max(all.loops, next.loops)};
    }
    return all;
}

SettingPatternGenerator::Piece SettingPatternGenerator::term(int depth) {
    const std::size_t kind = below(20);
    if (kind == 0 && !isInLookahead) {
        return {oneOf({"^", "$", "\\b", "\\B"}), true, 0};
    }
    if (kind == 1 && depth > 0 && options.lookaheads) {
        return lookahead(depth - 1);
    }
    if (kind == 2 && options.backReferences && !certainGroups.empty()) {
        return backReference();
    }
    const std::vector<int> certainBefore = certainGroups;
    Piece atom;
    if (kind < 8 && depth > 0) {
        atom = group(depth - 1);
    } else if (kind < 12) {
        const char* const set =
            oneOf({".",      "\\d",    "\\w",      "\\s",     "\\D",  "\\W",  "\\S",         "[ab]",
                   "[^a]",   "[a-c]",  "[]",       "[^]",     "[-a]", "[a-]", "[[:alpha:]]", "[^[:digit:]\\n]",
                   "[\\w-]", "[^\\n]", "[\\s\\S]", "[b-c1-9]"});
        atom = {set, false, 0};
    } else if (below(3) > 0) {
        atom = {oneOf({"a", "b", "c", "1"}), false, 0};
    } else {
        const char* const byte =
            oneOf({"\\n", "\\x61", "\\u0062", "=", "\\<", "\\-", "\\.", " ", ",", "]", "}", "\xC3"});
        atom = {byte, false, 0};
    }
    if (below(3) == 0) {
        atom = quantified(atom);
        certainGroups = certainBefore;
    }
    return atom;
}

SettingPatternGenerator::Piece SettingPatternGenerator::lookahead(int depth) {
    const std::vector<int> certainBefore = certainGroups;
    const bool wasInLookahead = isInLookahead;
    isInLookahead = true;
    const char* const opening = oneOf({"(?=", "(?!"});
    const Piece inside = alternatives(depth);
    isInLookahead = wasInLookahead;
    certainGroups = certainBefore;
    emptyLookahead = emptyLookahead || inside.canBeEmpty;
    return {opening + inside.pattern + ')', true, inside.loops};
}

SettingPatternGenerator::Piece SettingPatternGenerator::group(int depth) {
    if (below(3) == 0) {
        const Piece inside = alternatives(depth);
        return {"(?:" + inside.pattern + ')', inside.canBeEmpty, inside.loops};
    }
    const int number = ++groupCount;
    const Piece inside = alternatives(depth);
    certainGroups.push_back(number);
    return {'(' + inside.pattern + ')', inside.canBeEmpty, inside.loops};
}

SettingPatternGenerator::Piece SettingPatternGenerator::backReference() {
    const int number = certainGroups[below(certainGroups.size())];
    Piece reference{'\\' + std::to_string(number), true, 0};
    if (below(3) == 0) {
        reference = quantified(reference);
    }
    // In a group of its own, so that no digit follows.
    return {"(?:" + reference.pattern + ')', true, reference.loops};
}

SettingPatternGenerator::Piece SettingPatternGenerator::quantified(const Piece& piece) {
    while (true) {
        const Quantifier& quantifier = kQuantifiers[below(below(2) == 0 ? 6 : std::size(kQuantifiers))];
        const int loops = piece.loops + (!quantifier.isLoop ? 0 : piece.canBeEmpty ? 2 : 1);
        if (quantifier.isLoop && loops > kMaximumLoops) {
            continue;
        }
        return {piece.pattern + quantifier.text, piece.canBeEmpty || quantifier.mayBeNone, loops};
    }
}

std::string SettingPatternGenerator::text() {
    constexpr std::string_view kBytes("aaabbc1=\n\r -_.<\0\xC3\xFF", 18);
    std::string text;
    for (std::size_t length = below(9); length > 0; --length) {
        text += kBytes[below(below(3) > 0 ? 6 : kBytes.size())];
    }
    return text;
}

std::string SettingPatternGenerator::format() {
    std::string format;
    for (std::size_t pieces = below(5); pieces > 0; --pieces) {
        format += oneOf({"$1", "$2", "$3", "$&", "$`", "$'", "$$", "$", "$0", "$01", "$10", "$99", "1920", "x", "\\1"});
    }
    return format;
}

std::string SettingPatternGenerator::bracketExpression() {
    // Left out for the standard library's sake: ranges with bytes above 0x7F (it takes them for negative numbers), \c
    // (it takes the letter for the control character), \0 before a digit (it accepts that), single bytes other than
    // letters as collating elements and collating elements that end a range (it rejects both).
    const bool isAscii = below(4) > 0;
    std::string expression = below(4) == 0 ? "^" : "";
    for (std::size_t members = below(7); members > 0; --members) {
        const bool isRangeEnd = !expression.empty() && expression.back() == '-';
        if (isAscii) {
            expression += oneOf({"a",   "b",   "c",   "z",   "A",         "Z",         "-",    "-",     "-",
                                 "\\-", "\\]", "^",   "[",   "\\\\",      " ",         "~",    "\\x30", "\\u0039",
                                 "\\n", "\\b", "\\d", "\\W", "[:alpha:]", "[:SPACE:]", "[:w:]"});
        } else if (!isRangeEnd) {
            expression +=
                oneOf({"a", "Z", "\x80", "\xC3", "\xFF", "\\x00", "\\0", "\\xFE", "\\s", "\\D", "\\S", "[:punct:]",
                       "[:cntrl:]", "[:blank:]", "[.a.]", "[.hyphen.]", "[.NUL.]", "[=a=]", "[=tilde=]"});
        }
    }
    return expression + (below(16) == 0 ? "" : "]");
}

std::string SettingPatternGenerator::tokens() {
    std::string pattern;
    for (std::size_t count = 1 + below(7); count > 0;) {
        const std::string_view token =
            oneOf({"(", ")",   "[",   "]",  "{",     "}",   "*",     "+",   "?",     "|", "^", "$",
                   ".", "\\",  "a",   "b",  "1",     ",",   "-",     ":",   "=",     "!", "x", "u",
                   "d", "(?:", "(?=", "{1", "{2,1}", "{1,", "{1,2}", "[[:", "digit", ":]"});
        // The standard library takes several quantifiers in a row, which the grammar does not allow.
        const auto isOneOf = [](char byte, std::string_view bytes) {
            return bytes.find(byte) != std::string_view::npos;
        };
        if (!pattern.empty() && isOneOf(pattern.back(), "*+?}") && isOneOf(token.front(), "*+?{")) {
            continue;
        }
        pattern += token;
        --count;
    }
    return pattern;
}

std::string SettingPatternGenerator::patternWithTraces() {
    std::string pattern = oneOf({"", "", "c*", "\\w*?", "(?:.*\\n)*", "(?:.*\\n)+"});
    pattern += "(?:";
    for (std::size_t ways = 1 + below(3); ways > 0; --ways) {
        pattern +=
            oneOf({"(?=(c))a", "(?=(a|bc))[ab]", "(?!(c))b", "(?=(b)?).", "(b?)a", "(b)", "a", "b", "-", "c\\n"});
        pattern += ways > 1 ? "|" : ")";
    }
    pattern += oneOf({"", "*", "*?", "+", "?", "{2,}"});
    pattern += oneOf({"x", "c", "=", "(?=(b))c"});
    pattern += oneOf({"", "|c", "|cc", "|a"});
    return pattern;
}

std::string SettingPatternGenerator::textWithTraces() {
    std::string text;
    for (std::size_t length = below(9); length > 0; --length) {
        text += oneOf({"a", "b", "c", "x", "-", "=", "\n"});
    }
    return text;
}

std::string SettingPatternGenerator::settingKey() {
    const std::string lines =
        below(3) > 0 ? ""
                     : oneOf({"(?:.*\\n)*", "(?:.*\\n)+", "(?:.*\\n)*?", "(?:[^=]*=)*", "x?=?(?:[^\\n]*\\n)*\\s*"});
    const std::string name =
        oneOf({"Width", "ResolutionSizeX", "Fullscreen", "\\bMode", "r\\.Quality", "[A-Z]\\w+", "^\\s*Width"});
    const std::string separator = oneOf({"=", " = ", "\\s*=\\s*", "\">", "\" value=\"", ": *"});
    const std::string value =
        oneOf({"\\d+", "[0-9]+", "[^\\r\\n]*", "\\w+", "-?\\d+(?:\\.\\d+)?", ".*?", "true|false", "[^<\"]+"});
    const std::string end = oneOf({"", "\\r?\\n|$", "\\r?\\n", "\"", "</\\w+>", "(?=[\\r\\n])|$", "\\s*,?"});
    return '(' + lines + name + separator + ")(" + value + ")(" + end + ')';
}

std::string SettingPatternGenerator::settingsText() {
    const std::string lineEnd = oneOf({"\n", "\r\n"});
    std::string text;
    for (std::size_t lines = below(8); lines > 0; --lines) {
        text += oneOf({"", "  ", "\xEF\xBB\xBF", "\"", "<Setting name=\""});
        text += oneOf({"Width", "ResolutionSizeX", "Fullscreen", "Mode", "r.Quality", "width", "WidthHint"});
        text += oneOf({"=", " = ", " =", "\">", "\" value=\"", ": ", "\t=\t"});
        text += oneOf({"1280", "0", "-12.50", "true", "false", "\xC3\xBC", "", "1x2"});
        text += oneOf({"", "\"", "</Setting>", ",", " ; comment"});
        text += lines > 1 || below(2) == 0 ? lineEnd : "";
    }
    return text;
}

} // namespace brisk
