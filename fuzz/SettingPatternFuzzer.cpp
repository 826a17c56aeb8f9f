#include "fuzz/Fuzzing.h"
#include "fuzz/StandardPatterns.h"
#include "pattern/SettingPattern.h"

#include <algorithm>
#include <new>
#include <optional>
#include <regex>

// A pattern, a text and a replacement format: for themselves, and where it can serve as the measure against the
// standard library.

namespace brisk {
namespace {

struct Case {
    std::string pattern;
    std::string text;
    std::string format;
};

// A search passes over places where no match can begin. A pattern that must match at one given place is not searched
// for: it tells whether there is a match at any of the first places before the one that was found, and at that one.
void checkPlaces(const SettingPattern& pattern, const Case& input) {
    std::size_t tried = 0;
    const auto match = pattern.search(input.text, &tried);
    fuzzing::require(tried <= input.text.size() + 1, "no place is tried twice");
    const std::size_t found =
        match ? static_cast<std::size_t>(match->front().data() - input.text.data()) : input.text.size() + 1;
    constexpr std::size_t kPlaces = 8;
    for (std::size_t place = 0; place < std::min(kPlaces, found + 1) && place <= input.text.size(); ++place) {
        const SettingPattern there("^[^]{" + std::to_string(place) + "}(?:" + input.pattern + ")");
        fuzzing::requireEqual(there.search(input.text).has_value(), place == found,
                              "whether a match begins at a place");
    }
}

// The matches are parts of the text, and replacing each by itself changes nothing.
void checkAlone(const SettingPattern& pattern, const Case& input) {
    const std::string_view text = input.text;
    const auto match = pattern.search(text);
    if (match) {
        fuzzing::require(!match->empty(), "a match has an element for all of it");
        for (const std::string_view group : *match) {
            const bool isInside = group.empty() || (group.data() >= text.data() &&
                                                    group.data() + group.size() <= text.data() + text.size());
            fuzzing::require(isInside, "a group is part of the text");
        }
    }
    fuzzing::requireEqual(pattern.replace(text, "$&"), input.text, "replacing every match by itself");
    const std::string replaced = pattern.replace(text, input.format);
    if (!match) {
        fuzzing::requireEqual(replaced, input.text, "a text without a match");
    }
}

void compareSearch(const SettingPattern& ours, const std::regex& standard, const std::string& text) {
    const auto match = ours.search(text);
    std::smatch expected;
    fuzzing::requireEqual(match.has_value(), std::regex_search(text, expected, standard), "whether there is a match");
    if (!match) {
        return;
    }
    fuzzing::requireEqual<long>(match->front().data() - text.data(), expected.position(0), "the match's place");
    fuzzing::requireEqual(match->size(), expected.size(), "the number of groups");
    for (std::size_t group = 0; group < match->size(); ++group) {
        fuzzing::requireEqual(std::string((*match)[group]), expected[group].str(), "a group's text");
    }
}

void compareWithStandard(const std::optional<SettingPattern>& ours, const Case& input) {
    std::optional<std::regex> standard;
    try {
        standard.emplace(input.pattern);
    } catch (const std::regex_error&) {
        // Rejected.
    }
    fuzzing::requireEqual(ours.has_value(), standard.has_value(), "whether the pattern is accepted");
    if (!ours || !fuzzing::canStandardSearch(input.pattern, input.text)) {
        return;
    }
    compareSearch(*ours, *standard, input.text);
    if (fuzzing::canStandardReplace(input.pattern)) {
        fuzzing::requireEqual(ours->replace(input.text, input.format),
                              std::regex_replace(input.text, *standard, input.format), "the replaced text");
    }
}

void checkCase(const Case& input) {
    std::optional<SettingPattern> pattern;
    try {
        pattern.emplace(input.pattern);
        checkAlone(*pattern, input);
        checkPlaces(*pattern, input);
    } catch (const std::regex_error&) {
        // A pattern that is none, or a search that was given up.
    } catch (const std::bad_alloc&) {
        return;
    }
    if (fuzzing::isStandardMeasure(input.pattern)) {
        compareWithStandard(pattern, input);
    }
}

} // namespace
} // namespace brisk

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace brisk::fuzzing;
    const std::vector<std::string> fields = splitFields(toText(data, size), 3);
    // Lengths at which a hopeless pattern still ends in time: backtracking doubles with every byte.
    constexpr std::size_t kMaximumPattern = 80;
    const std::string pattern = fields[0].substr(0, kMaximumPattern);
    const std::size_t choices = countChoices(pattern);
    const std::size_t maximumText = choices <= 1 ? 4096 : choices <= 3 ? 12 : 8;
    brisk::checkCase({pattern, fields[1].substr(0, maximumText), fields[2]});
    return 0;
}
