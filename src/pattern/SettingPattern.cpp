#include "pattern/SettingPattern.h"

#include "pattern/PatternSearch.h"
#include "pattern/ReplacementFormat.h"

namespace brisk {

namespace {

void readMatch(const PatternMatcher& matcher, SettingPattern::Match& match) {
    for (std::size_t group = 0; group < match.size(); ++group) {
        match[group] = matcher.group(group);
    }
}

} // namespace

SettingPattern::SettingPattern(std::string_view pattern)
    : compiled(std::make_unique<const PatternSearch>(parsePattern(pattern))) {}

SettingPattern::~SettingPattern() = default;
SettingPattern::SettingPattern(SettingPattern&&) noexcept = default;
SettingPattern& SettingPattern::operator=(SettingPattern&&) noexcept = default;

std::optional<SettingPattern::Match> SettingPattern::search(std::string_view text, std::size_t* placesTried) const {
    PatternMatcher matcher(compiled->steps(), text);
    std::size_t places = 0;
    const bool isFound = compiled->find(matcher, text, 0, places);
    if (placesTried) {
        *placesTried += places;
    }
    if (!isFound) {
        return std::nullopt;
    }
    Match match(compiled->steps().groupCount + 1);
    readMatch(matcher, match);
    return match;
}

void SettingPattern::forEachMatch(std::string_view text, const std::function<bool(const Match&)>& onMatch) const {
    PatternMatcher matcher(compiled->steps(), text);
    Match match(compiled->steps().groupCount + 1);
    std::size_t places = 0;
    bool hasMovedOn = false;
    bool isFound = compiled->find(matcher, text, 0, places);
    while (isFound) {
        readMatch(matcher, match);
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
            isFound = compiled->matchesAt(matcher, end, hasMovedOn ? 0 : end);
            if (isFound) {
                continue;
            }
            ++next;
        }
        hasMovedOn = true;
        isFound = compiled->find(matcher, text, next, places);
    }
}

std::string SettingPattern::replace(std::string_view text, std::string_view format) const {
    const ReplacementFormat replacement(format);
    std::string output;
    output.reserve(text.size());
    std::size_t copied = 0;
    forEachMatch(text, [&](const Match& match) {
        const std::size_t begin = static_cast<std::size_t>(match.front().data() - text.data());
        const std::size_t end = begin + match.front().size();
        const std::string_view before = text.substr(copied, begin - copied);
        output += before;
        replacement.append(output, match, before, text.substr(end));
        copied = end;
        return true;
    });
    // Not returned as append's result, which is a reference: the whole text would be copied.
    output += text.substr(copied);
    return output;
}

} // namespace brisk
