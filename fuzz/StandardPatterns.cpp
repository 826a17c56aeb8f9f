#include "fuzz/StandardPatterns.h"

#include <algorithm>

namespace brisk::fuzzing {

namespace {

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

bool isOneOf(char byte, std::string_view bytes) {
    return bytes.find(byte) != std::string_view::npos;
}

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

bool hasByteAboveAscii(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](char byte) { return static_cast<unsigned char>(byte) > 0x7F; });
}

// Two quantifiers in a row: the second one is no "?" that makes the first one lazy.
bool hasRepeatedQuantifier(std::string_view pattern) {
    for (std::size_t i = 0; i + 1 < pattern.size(); ++i) {
        if (!isOneOf(pattern[i], "*+?}")) {
            continue;
        }
        const bool isLazy = pattern[i + 1] == '?';
        const std::size_t next = i + (isLazy ? 2 : 1);
        if (next < pattern.size() && isOneOf(pattern[next], isLazy ? "*+?{" : "*+{")) {
            return true;
        }
    }
    return false;
}

// Any backslash followed by a byte that the predicate picks, also a backslash that is itself escaped.
template <class Pick>
bool hasEscape(std::string_view pattern, const Pick& pick) {
    for (std::size_t i = 0; i + 1 < pattern.size(); ++i) {
        if (pattern[i] == '\\' && pick(pattern[i + 1], pattern.substr(i + 2))) {
            return true;
        }
    }
    return false;
}

// The standard library lays out a counted repetition round by round, and has room for 100,000 states: nested counts
// multiply.
bool hasLargeCounts(std::string_view pattern) {
    constexpr std::size_t kMaximumRounds = 300;
    std::size_t rounds = 1;
    for (std::size_t i = pattern.find('{'); i != std::string_view::npos; i = pattern.find('{', i + 1)) {
        std::size_t count = 0;
        for (std::size_t at = i + 1; at < pattern.size() && (isDigit(pattern[at]) || pattern[at] == ','); ++at) {
            count = pattern[at] == ',' ? 0 : 10 * count + static_cast<std::size_t>(pattern[at] - '0');
            if (count > kMaximumRounds) {
                return true;
            }
        }
        rounds *= std::max<std::size_t>(count, 1);
        if (rounds > kMaximumRounds) {
            return true;
        }
    }
    return false;
}

bool hasLookahead(std::string_view pattern) {
    return contains(pattern, "(?=") || contains(pattern, "(?!");
}

} // namespace

std::size_t countChoices(std::string_view pattern) {
    return static_cast<std::size_t>(
        std::count_if(pattern.begin(), pattern.end(), [](char byte) { return isOneOf(byte, "*+?{|"); }));
}

bool isStandardMeasure(std::string_view pattern) {
    const bool hasBracket = contains(pattern, "[");
    const bool hasStrangeEscape = hasEscape(pattern, [&](char letter, std::string_view rest) {
        switch (letter) {
        case 'c':
            return true;
        case '0':
            return !rest.empty() && isDigit(rest.front());
        case 'u':
            return hasBracket || !rest.starts_with("00");
        case 'x':
            return hasBracket;
        default:
            // The number of a reference is read without regard to its size.
            return isDigit(letter) && rest.size() > 1 && isDigit(rest[0]) && isDigit(rest[1]);
        }
    });
    const bool hasCollation = contains(pattern, "[.") || contains(pattern, "[=");
    return !hasStrangeEscape && !hasCollation && !(hasBracket && hasByteAboveAscii(pattern)) &&
           !hasRepeatedQuantifier(pattern) && !hasLargeCounts(pattern);
}

bool canStandardSearch(std::string_view pattern, std::string_view text) {
    constexpr std::size_t kMaximumText = 7;
    constexpr std::size_t kMaximumChoices = 4;
    if (text.size() > kMaximumText || countChoices(pattern) > kMaximumChoices) {
        return false;
    }
    // What is referred to must have taken part, and a counted repetition must not be one of the empty text.
    const bool hasBackReference =
        hasEscape(pattern, [](char letter, std::string_view) { return isDigit(letter) && letter != '0'; });
    if (hasBackReference && (hasLookahead(pattern) || pattern.find_first_of("|*?{") != std::string_view::npos)) {
        return false;
    }
    const bool hasAnchor = contains(pattern, "^") || hasEscape(pattern, [](char letter, std::string_view) {
                               return letter == 'b' || letter == 'B';
                           });
    return !contains(pattern, "){") && !(hasLookahead(pattern) && hasAnchor);
}

bool canStandardReplace(std::string_view pattern) {
    return !hasLookahead(pattern);
}

} // namespace brisk::fuzzing
