#include "tools/titles/PatternText.h"
#include "tools/titles/SettingPlace.h"

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
    // Whatever it looks like, a line may be one.
    return found.empty() ? findLineSettings(text, isWanted) : found;
}

} // namespace brisk::workbench
