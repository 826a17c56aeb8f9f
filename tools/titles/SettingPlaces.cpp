#include "tools/titles/PatternText.h"
#include "tools/titles/SettingPlace.h"
#include "tools/titles/SettingsText.h"

#include <algorithm>

namespace brisk::workbench {

namespace {

// "[Section]" and nothing else, as no array begins.
bool beginsWithSection(std::string_view text) {
    const std::string_view line = trimmed(text.substr(0, text.find('\n')));
    return line.starts_with('[') && line.ends_with(']') && line.find_first_of("{\",") == std::string_view::npos &&
           line.size() > 2;
}

// A table that a name stands in front of, or `return`: Lua, and what looks like it.
bool hasTables(std::string_view text) {
    for (std::size_t at = text.find('{'); at != std::string_view::npos; at = text.find('{', at + 1)) {
        const std::size_t before = text.find_last_not_of(" \t\r\n", at == 0 ? 0 : at - 1);
        if (before != std::string_view::npos && before < at &&
            (text[before] == '=' || text[before] == ':' || text.substr(0, before + 1).ends_with("return"))) {
            return text.find('}', at) != std::string_view::npos;
        }
    }
    return false;
}

bool isScript(std::string_view text) {
    return trimmed(text).starts_with("--") || text.find("\nlocal ") != std::string_view::npos ||
           text.starts_with("local ");
}

// "video:" with a deeper line behind it.
bool opensBlock(std::string_view text, const SettingPlace& place) {
    const std::size_t colon = text.find_last_not_of(" \t", place.begin == 0 ? 0 : place.begin - 1);
    if (place.begin != place.end || colon == std::string_view::npos || text[colon] != ':') {
        return false;
    }
    const auto indentOf = [text](std::size_t begin) {
        return std::min(text.find_first_not_of(" \t", begin), text.size()) - begin;
    };
    const std::size_t line = text.rfind('\n', colon) + 1;
    const std::size_t next = text.find('\n', place.end);
    return next != std::string_view::npos && indentOf(next + 1) > indentOf(line);
}

} // namespace

std::vector<SettingPlace> findSettings(std::string_view text, const WantedSetting& isWanted) {
    const std::string_view content = trimmed(text.substr(markSize(text)));
    std::vector<SettingPlace> found;
    if (content.starts_with('<')) {
        found = findMarkupSettings(text, isWanted);
    } else if (content.starts_with('{') || (content.starts_with('[') && !beginsWithSection(content)) ||
               (!content.starts_with('[') && (hasTables(content) || isScript(content)))) {
        found = findTableSettings(text, isWanted);
    }
    if (!found.empty()) {
        return found;
    }
    // Whatever it looks like, a line may be one. What only opens a block is none.
    found = findLineSettings(text, isWanted);
    std::erase_if(found, [&](const SettingPlace& place) {
        const std::string_view value = text.substr(place.begin, place.end - place.begin);
        return value == "{" || value == "[" || value == "(" || opensBlock(text, place) ||
               (content.starts_with('<') && isInComment(text, place.begin));
    });
    return found;
}

} // namespace brisk::workbench
