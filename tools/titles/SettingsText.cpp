#include "tools/titles/SettingsText.h"

#include <algorithm>
#include <array>

namespace brisk::workbench {

namespace {

constexpr std::string_view kBlanks = " \t\r";

std::string_view withoutBlanks(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(kBlanks);
    return begin == std::string_view::npos ? std::string_view() : text.substr(begin);
}

bool isBlank(char byte) {
    return kBlanks.find(byte) != std::string_view::npos;
}

// Whether a comment begins in the part of a line, behind something else.
bool hasTrailingComment(std::string_view part) {
    bool isQuoted = false;
    for (std::size_t at = 0; at < part.size(); ++at) {
        if (part[at] == '"') {
            isQuoted = !isQuoted;
        }
        if (isQuoted || at == 0 || !isBlank(part[at - 1]) || !beginsComment(part.substr(at))) {
            continue;
        }
        const std::size_t behind = part.find_first_not_of("#;/-", at);
        // "#ff8000" and "--width" are values.
        if (behind == std::string_view::npos || isBlank(part[behind]) || part[at] == ';' || part[at] == '/') {
            return true;
        }
    }
    return false;
}

bool isBetween(std::string_view text, std::size_t place, std::string_view opening, std::string_view closing) {
    const std::size_t begin = text.substr(0, place).rfind(opening);
    if (begin == std::string_view::npos) {
        return false;
    }
    const std::size_t end = text.find(closing, begin + opening.size());
    return end != std::string_view::npos && end >= place;
}

bool isNameByte(char byte) {
    const auto code = static_cast<unsigned char>(byte);
    return (code >= '0' && code <= '9') || (code >= 'A' && code <= 'Z') || (code >= 'a' && code <= 'z') ||
           code == '_' || code == '.' || code == '-' || code >= 0x80;
}

std::string_view takeName(std::string_view& rest) {
    const auto* const end = std::find_if_not(rest.begin(), rest.end(), isNameByte);
    const std::string_view name = rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
    rest.remove_prefix(name.size());
    return name;
}

bool isSectionHead(std::string_view line) {
    return withoutBlanks(line).starts_with('[');
}

} // namespace

bool beginsComment(std::string_view text) {
    return text.starts_with(';') || text.starts_with('#') || text.starts_with("//") || text.starts_with("--");
}

bool isInComment(std::string_view text, std::size_t place) {
    place = std::min(place, text.size());
    const std::size_t lineEnd = text.substr(0, place).rfind('\n');
    const std::string_view part = text.substr(0, place).substr(lineEnd == std::string_view::npos ? 0 : lineEnd + 1);
    return beginsComment(withoutBlanks(part)) || hasTrailingComment(part) || isBetween(text, place, "<!--", "-->") ||
           isBetween(text, place, "/*", "*/");
}

std::string nameInLine(std::string_view line) {
    line = withoutBlanks(line);
    if (beginsComment(line)) {
        return {};
    }
    for (const std::string_view command : {"seta ", "set ", "sets ", "setu "}) {
        if (line.starts_with(command)) {
            line = withoutBlanks(line.substr(command.size()));
            std::string_view rest = line;
            return std::string(takeName(rest));
        }
    }
    const bool isQuoted = line.starts_with('"');
    line.remove_prefix(isQuoted ? 1 : 0);
    const std::string_view name = takeName(line);
    line.remove_prefix(isQuoted && line.starts_with('"') ? 1 : 0);
    line = withoutBlanks(line);
    return line.starts_with('=') || line.starts_with(':') ? std::string(name) : std::string();
}

std::size_t countSettings(std::string_view text, std::size_t place, std::string_view name) {
    std::size_t count = 0;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const std::string_view line = text.substr(begin, end - begin);
        if (isSectionHead(line)) {
            if (begin > place) {
                break;
            }
            count = 0;
        }
        count += nameInLine(line) == name ? 1U : 0U;
        begin = end + 1;
    }
    return count;
}

} // namespace brisk::workbench
