#include "tools/titles/ValueForm.h"

#include "tools/titles/AsciiText.h"
#include "tools/titles/PatternText.h"

#include <algorithm>
#include <array>
#include <vector>

namespace brisk::workbench {

namespace {

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

bool isUpper(char byte) {
    return byte >= 'A' && byte <= 'Z';
}

// "LastResolutionSizeX" is last, resolution, size, x.
std::vector<std::string> wordsOf(std::string_view name) {
    std::vector<std::string> words(1);
    bool wasLower = false;
    for (const char byte : name) {
        const bool isLetter = isUpper(byte) || (byte >= 'a' && byte <= 'z');
        if (!isLetter || (wasLower && isUpper(byte))) {
            words.emplace_back();
        }
        if (isLetter) {
            words.back() += lowered(byte);
        }
        wasLower = isLetter && !isUpper(byte);
    }
    std::erase(words, "");
    return words;
}

// Members of a character class.
std::string classOf(std::string_view stops) {
    return stops == "]" || stops == "^" || stops == "\\" || stops == "-" ? "\\" + std::string(stops)
                                                                         : std::string(stops);
}

} // namespace

ValueKind kindOf(std::string_view value) {
    std::string_view digits = value;
    if (digits.starts_with('-')) {
        digits.remove_prefix(1);
    }
    if (!digits.empty() && digits.size() <= 10 && std::all_of(digits.begin(), digits.end(), isDigit)) {
        return ValueKind::Number;
    }
    if (digits.find_first_not_of("0123456789.eE+-") == std::string_view::npos &&
        std::count(digits.begin(), digits.end(), '.') == 1 && std::any_of(digits.begin(), digits.end(), isDigit)) {
        return ValueKind::Fraction;
    }
    constexpr auto kWords = std::to_array<std::string_view>(
        {"true", "false", "on", "off", "yes", "no", "enabled", "disabled", "enable", "disable"});
    const std::string small = lowered(value);
    return std::find(kWords.begin(), kWords.end(), small) != kWords.end() ? ValueKind::Word : ValueKind::Text;
}

std::string valueGroup(const SettingPlace& place, std::string_view value, ValueKind kind, const std::string& before) {
    switch (kind) {
    case ValueKind::Number:
        return dimensionOf(place.name) && !value.starts_with('-') ? "\\d+" : "-?\\d+";
    case ValueKind::Fraction:
        return "-?[\\d.]+";
    case ValueKind::Word:
        return "\\w+";
    case ValueKind::Text:
        break;
    }
    const std::string stops = classOf(place.stops);
    switch (place.kind) {
    case SettingPlace::End::Line:
        // Blanks in front must not belong to both.
        return before.ends_with('*') && !value.empty() ? "\\S[^\\n]*" : "[^\\n]*";
    case SettingPlace::End::Quote:
        if (value.find("\\" + place.stops) != std::string_view::npos) {
            return "(?:[^" + stops + "\\\\\\n]|\\\\[^\\n])*";
        }
        return "[^" + stops + "\\n]*";
    case SettingPlace::End::Markup:
        return value.empty() ? "[^<]*" : "[^<\\s][^<]*";
    case SettingPlace::End::Element:
        return "[^\\s,;{}\\[\\]]+";
    case SettingPlace::End::Blank:
        break;
    }
    const std::string word = "[^\\s" + stops + "]+";
    return value.find_first_of(" \t") == std::string_view::npos ? word : word + "(?:[ \\t]+" + word + ")*";
}

std::optional<Dimension> dimensionOf(std::string_view name) {
    static constexpr auto kOthers = std::to_array<std::string_view>(
        {"min",     "minimum", "max",   "maximum", "line",   "shadow",    "border", "map",      "minimap",
         "text",    "font",    "hud",   "ui",      "tab",    "pixel",     "aspect", "texture",  "tree",
         "outline", "cursor",  "chat",  "panel",   "button", "shadowmap", "far",    "near",     "safe",
         "brush",   "terrain", "water", "cube",    "editor", "dpi",       "pos",    "position", "offset"});
    const auto isOther = [](std::string_view word) {
        return std::find(kOthers.begin(), kOthers.end(), word) != kOthers.end();
    };
    const std::vector<std::string> words = wordsOf(name);
    for (const std::string& word : words) {
        const std::string_view front =
            std::string_view(word).substr(0, std::min(word.rfind("width"), word.rfind("height")));
        if (isOther(word) || isOther(front)) {
            return std::nullopt;
        }
    }
    if (words.empty()) {
        return std::nullopt;
    }
    const std::string& last = words.back();
    const bool isOfSize = words.size() > 1 && std::any_of(words.begin(), words.end() - 1, [](const std::string& word) {
                              return word == "resolution" || word == "res" || word == "size" || word == "screen" ||
                                     word == "resolutionsize";
                          });
    if (last.ends_with("width") || last.ends_with("resx") || (isOfSize && (last == "x" || last == "w"))) {
        return Dimension::Width;
    }
    if (last.ends_with("height") || last.ends_with("resy") || (isOfSize && (last == "y" || last == "h"))) {
        return Dimension::Height;
    }
    return std::nullopt;
}

bool isScreenName(std::string_view name) {
    const std::string small = lowered(name);
    return small.find("res") != std::string::npos || small.find("screen") != std::string::npos ||
           small.find("display") != std::string::npos || small.find("video") != std::string::npos;
}

} // namespace brisk::workbench
