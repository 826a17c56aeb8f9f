#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brisk {

class PatternSearch;

// A compiled ECMAScript regular expression for settings in a game's configuration text. It reads patterns and formats
// as std::regex, std::regex_search and std::regex_replace do by default, but neither the length of a text nor a
// hopeless pattern harms it: a search is given up with an exception after a fixed amount of work or memory, and the
// stack stays small. Works on bytes; NUL and bytes above 0x7F are as good as any other.
//
// The only errors that leave it are std::regex_error and std::bad_alloc. A pattern never changes: threads may share it.
class SettingPattern {
public:
    // Throws std::regex_error when the pattern does not follow the grammar or is too complex.
    explicit SettingPattern(std::string_view pattern);
    ~SettingPattern();
    SettingPattern(SettingPattern&&) noexcept;
    SettingPattern& operator=(SettingPattern&&) noexcept;

    // One match: element 0 is all the matched text, element n what group n matched (empty when it took no part). There
    // is an element for every group of the pattern. The elements are parts of the searched text.
    using Match = std::vector<std::string_view>;

    // The first match in text. Throws std::regex_error when the search is given up. Counts at how many places of the
    // text the pattern was tried, where that is asked for: a search goes straight to those that matter.
    std::optional<Match> search(std::string_view text, std::size_t* placesTried = nullptr) const;

    // The matches that replace() replaces, one after the other: every one if the function answers true each time.
    // Throws std::regex_error when a search is given up.
    void forEachMatch(std::string_view text, const std::function<bool(const Match&)>& onMatch) const;

    // The text with every match replaced by the format ($1, $&, ...; see ReplacementFormat.h); unchanged when there is
    // no match. Throws std::regex_error when a search is given up.
    std::string replace(std::string_view text, std::string_view format) const;

private:
    std::unique_ptr<const PatternSearch> compiled;
};

} // namespace brisk
