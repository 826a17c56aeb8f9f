#include "pattern/SettingPattern.h"

#include "pattern/EcmaScriptTranslation.h"
#include "pattern/ReplacementFormat.h"

#include <cstddef>
#include <iterator>
#include <locale>
#include <regex>

// What one search may cost at most: steps of the matcher (a second or a few) and blocks of 4 KB for the places to come
// back to (256 MB). Boost's own 4 MB would not do for a group repeated over every line of a large file.
#define BOOST_REGEX_MAX_STATE_COUNT 100000000
#define BOOST_REGEX_MAX_BLOCKS 65536
#include <boost/regex.hpp>

namespace brisk {

namespace {

// A place in the searched text. Random access is left out on purpose: for such iterators Boost.Regex lets the permitted
// steps grow with the text and the square of the pattern's length, which on a large file is hours.
class TextPosition {
public:
    using iterator_category = std::bidirectional_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    TextPosition() = default;
    explicit TextPosition(const char* byte) : current(byte) {}

    const char* byte() const { return current; }

    const char& operator*() const { return *current; }
    TextPosition& operator++() {
        ++current;
        return *this;
    }
    TextPosition operator++(int) { return TextPosition(current++); }
    TextPosition& operator--() {
        --current;
        return *this;
    }
    TextPosition operator--(int) { return TextPosition(current--); }
    bool operator==(const TextPosition&) const = default;

private:
    const char* current = nullptr;
};

// Boost.Regex would take the character classes of the user's Windows locale by default.
using Traits = boost::cpp_regex_traits<char>;
using Expression = boost::basic_regex<char, boost::regex_traits<char, Traits>>;
using Results = boost::match_results<TextPosition>;

[[noreturn]] void throwStandardError(boost::regex_constants::error_type code) {
    namespace standard = std::regex_constants;
    switch (code) {
    case boost::regex_constants::error_stack:
        throw std::regex_error(standard::error_stack);
    case boost::regex_constants::error_space:
    case boost::regex_constants::error_size:
        throw std::regex_error(standard::error_space);
    default:
        throw std::regex_error(standard::error_complexity);
    }
}

std::string_view textOf(const boost::sub_match<TextPosition>& group) {
    return group.matched ? std::string_view(group.first.byte(), group.second.byte()) : std::string_view();
}

SettingPattern::Match matchOf(const Results& results) {
    SettingPattern::Match match;
    for (std::size_t group = 0; group < results.size(); ++group) {
        match.push_back(textOf(results[static_cast<int>(group)]));
    }
    return match;
}

} // namespace

struct SettingPattern::Compiled {
    explicit Compiled(const std::string& translated) {
        expression.imbue(std::locale::classic());
        expression.assign(translated, boost::regex_constants::perl);
    }

    // Whether there is a match in text from the given offset on. To the assertions, text begins at contextBegin.
    bool search(std::string_view text, std::size_t contextBegin, std::size_t offset, boost::match_flag_type flags,
                Results& results) const {
        const char* const data = text.data();
        try {
            return boost::regex_search(TextPosition(data + offset), TextPosition(data + text.size()), results,
                                       expression, flags, TextPosition(data + contextBegin));
        } catch (const boost::regex_error& error) {
            throwStandardError(error.code());
        }
    }

    Expression expression;
};

SettingPattern::SettingPattern(std::string_view pattern) {
    const std::string translated = translateEcmaScript(pattern);
    try {
        compiled = std::make_unique<const Compiled>(translated);
    } catch (const boost::regex_error& error) {
        throwStandardError(error.code());
    }
}

SettingPattern::~SettingPattern() = default;
SettingPattern::SettingPattern(SettingPattern&&) noexcept = default;
SettingPattern& SettingPattern::operator=(SettingPattern&&) noexcept = default;

std::optional<SettingPattern::Match> SettingPattern::search(std::string_view text) const {
    Results results;
    if (!compiled->search(text, 0, 0, boost::match_default, results)) {
        return std::nullopt;
    }
    return matchOf(results);
}

void SettingPattern::forEachMatch(std::string_view text, const std::function<bool(const Match&)>& onMatch) const {
    Results results;
    bool hasMovedOn = false;
    bool isFound = compiled->search(text, 0, 0, boost::match_default, results);
    while (isFound) {
        const Match match = matchOf(results);
        if (!onMatch(match)) {
            return;
        }
        const std::size_t begin = static_cast<std::size_t>(match.front().data() - text.data());
        const std::size_t end = begin + match.front().size();
        std::size_t next = end;
        if (begin == end) {
            if (end == text.size()) {
                return;
            }
            // After an empty match the same place may still begin a longer one. std::regex_iterator looks for it
            // without regard to what stands before, as long as all matches so far were such ones.
            isFound = compiled->search(text, hasMovedOn ? 0 : end, end, boost::match_not_null | boost::match_continuous,
                                       results);
            if (isFound) {
                continue;
            }
            ++next;
        }
        hasMovedOn = true;
        isFound = compiled->search(text, 0, next, boost::match_default, results);
    }
}

std::string SettingPattern::replace(std::string_view text, std::string_view format) const {
    std::string output;
    output.reserve(text.size());
    std::size_t copied = 0;
    forEachMatch(text, [&](const Match& match) {
        const std::size_t begin = static_cast<std::size_t>(match.front().data() - text.data());
        const std::size_t end = begin + match.front().size();
        const std::string_view before = text.substr(copied, begin - copied);
        output += before;
        appendReplacement(output, format, match, before, text.substr(end));
        copied = end;
        return true;
    });
    return output.append(text.substr(copied));
}

} // namespace brisk
