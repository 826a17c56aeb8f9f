#include "tools/titles/PatternText.h"
#include "tools/titles/SettingPlace.h"
#include "tools/titles/SettingsText.h"

#include <algorithm>
#include <array>
#include <optional>

namespace brisk::workbench {

namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::size_t kNowhere = std::string_view::npos;

bool isBlank(char byte) {
    return byte == ' ' || byte == '\t';
}

// A line with a setting; offsets from the line's beginning.
struct Line {
    std::string_view text;
    std::size_t indent = 0;
    std::size_t nameEnd = 0;
    std::size_t separatorEnd = 0; // behind "=" and its blanks
    std::string separator;        // its expression
    std::string name;
    std::size_t valueBegin = 0; // without quotation marks
    std::size_t valueEnd = 0;
    char quote = '\0';
    std::string rest; // what follows the value, without blanks
};

// "seta r_mode" and the like; the beginning of the name.
std::size_t skipCommand(std::string_view text, std::size_t begin) {
    constexpr auto kCommands = std::to_array<std::string_view>({"set", "seta", "sets", "setu", "setenv"});
    const std::size_t end = text.find_first_of(kBlanks, begin);
    if (end == kNowhere ||
        std::find(kCommands.begin(), kCommands.end(), text.substr(begin, end - begin)) == kCommands.end()) {
        return begin;
    }
    const std::size_t name = text.find_first_not_of(kBlanks, end);
    // "set = 1" is a setting of that name.
    return name == kNowhere || text[name] == '=' || text[name] == ':' ? begin : name;
}

std::size_t endOfQuoted(std::string_view text, std::size_t begin) {
    const std::size_t end = text.find(text[begin], begin + 1);
    return end == kNowhere ? kNowhere : end + 1;
}

bool isQuote(char byte) {
    return byte == '"' || byte == '\'';
}

// "=", or a ":" that is none of two.
std::size_t findSign(std::string_view text, std::size_t begin) {
    for (std::size_t at = begin; at < text.size(); ++at) {
        if (text[at] == '=') {
            return at;
        }
        if (text[at] == ':') {
            if (at + 1 < text.size() && text[at + 1] == ':') {
                ++at;
                continue;
            }
            return at;
        }
    }
    return kNowhere;
}

// Finds the end of the name and the separator; false where the line has none.
bool readName(Line& line) {
    const std::string_view text = line.text;
    const std::size_t begin = skipCommand(text, line.indent);
    const bool isCommand = begin != line.indent;
    std::size_t nameEnd = kNowhere;
    std::size_t sign = kNowhere;
    if (isQuote(text[begin])) {
        nameEnd = endOfQuoted(text, begin);
        if (nameEnd == kNowhere) {
            return false;
        }
        const std::size_t next = text.find_first_not_of(kBlanks, nameEnd);
        sign = next != kNowhere && (text[next] == '=' || text[next] == ':') ? next : kNowhere;
    } else if (isCommand) {
        nameEnd = text.find_first_of(kBlanks, begin);
    } else {
        sign = findSign(text, begin);
        nameEnd = sign == kNowhere ? text.find_first_of(kBlanks, begin) : sign;
    }
    if (nameEnd == kNowhere || nameEnd == begin) {
        return false;
    }
    while (isBlank(text[nameEnd - 1])) {
        --nameEnd;
    }
    const std::size_t behindSign = sign == kNowhere ? nameEnd : sign + 1;
    line.separatorEnd = std::min(text.find_first_not_of(kBlanks, behindSign), text.size());
    const std::string_view blanks = text.substr(behindSign, line.separatorEnd - behindSign);
    if (sign == kNowhere) {
        if (blanks.empty()) {
            return false;
        }
        line.separator = blanks == " " ? " " : blanks.find('\t') == kNowhere ? " +" : "[ \\t]+";
    } else {
        line.separator = blanksLike(text.substr(nameEnd, sign - nameEnd)) + text[sign] + blanksLike(blanks);
    }
    line.nameEnd = nameEnd;
    line.name = text.substr(begin, nameEnd - begin);
    if (isQuote(line.name.front())) {
        line.name = line.name.substr(1, line.name.size() - 2);
    }
    return true;
}

void readValue(Line& line) {
    const std::string_view text = line.text;
    line.valueBegin = line.separatorEnd;
    line.valueEnd = text.size();
    if (line.valueBegin < text.size() && isQuote(text[line.valueBegin])) {
        const std::size_t end = endOfQuoted(text, line.valueBegin);
        if (end != kNowhere) {
            line.quote = text[line.valueBegin];
            ++line.valueBegin;
            line.valueEnd = end - 1;
            line.rest = trimmed(text.substr(end));
            return;
        }
    }
    for (std::size_t at = line.valueBegin; at < text.size(); ++at) {
        const bool isSetOff = at == line.valueBegin || isBlank(text[at - 1]);
        const std::size_t behind = text.find_first_not_of("#;/-", at);
        // "#ff8000" and "--width" are values.
        if (isSetOff && beginsComment(text.substr(at)) &&
            (behind == kNowhere || isBlank(text[behind]) || text[at] == ';' || text[at] == '/')) {
            line.valueEnd = at;
            break;
        }
    }
    while (line.valueEnd > line.valueBegin && isBlank(text[line.valueEnd - 1])) {
        --line.valueEnd;
    }
    const std::string_view value = text.substr(line.valueBegin, line.valueEnd - line.valueBegin);
    const std::size_t semicolon = value.find(';');
    // "width = 1920;" and "60;comment".
    if (semicolon != kNowhere && semicolon > 0 && value.find_first_of("\"'({") == kNowhere) {
        line.valueEnd = line.valueBegin + semicolon;
    } else if (value.size() > 1 && value.ends_with(',')) {
        --line.valueEnd;
    }
    line.rest = text.substr(line.valueEnd);
}

std::optional<Line> readLine(std::string_view text) {
    Line line;
    line.text = text;
    line.indent = std::min(text.find_first_not_of(kBlanks), text.size());
    if (line.indent == text.size() || beginsComment(text.substr(line.indent)) || !readName(line)) {
        return std::nullopt;
    }
    readValue(line);
    return line;
}

// Walks through the lines and knows what stands around each.
class Reader {
public:
    Reader(std::string_view content, const WantedSetting& wanted) : text(content), isWanted(wanted) {}

    std::vector<SettingPlace> read() {
        for (std::size_t begin = markSize(text); begin < text.size();) {
            const std::size_t end = std::min(text.find('\n', begin), text.size());
            std::string_view line = text.substr(begin, end - begin);
            if (line.ends_with('\r')) {
                line.remove_suffix(1);
            }
            readAt(begin, line);
            begin = end + 1;
        }
        return std::move(found);
    }

private:
    void readAt(std::size_t begin, std::string_view content) {
        const std::string_view inner = trimmed(content);
        if (inner.starts_with('[') && inner.find(']') != kNowhere && inner.find('=') == kNowhere) {
            section = inner.substr(0, inner.find(']') + 1);
            before.clear();
            return;
        }
        if (const auto line = readLine(content)) {
            if (isWanted(line->name, begin + line->valueBegin, begin + line->valueEnd)) {
                add(begin, *line);
            }
        }
        if (!inner.empty()) {
            before.push_back(content);
            if (before.size() > kContext) {
                before.erase(before.begin());
            }
        }
    }

    void add(std::size_t begin, const Line& line) {
        SettingPlace place;
        place.name = line.name;
        place.begin = begin + line.valueBegin;
        place.end = begin + line.valueEnd;
        std::string behind;
        if (line.quote != '\0') {
            place.kind = SettingPlace::End::Quote;
            place.stops = line.quote;
            behind = line.quote;
        } else if (!line.rest.empty()) {
            place.kind = SettingPlace::End::Blank;
            place.stops = std::string_view(";#,").find(line.rest.front()) != kNowhere ? line.rest.substr(0, 1) : "";
            const std::string_view comment = trimmed(line.rest);
            if (place.stops.empty() && !comment.empty() && (comment[0] == ';' || comment[0] == '#')) {
                place.stops = comment[0];
            }
        }
        const std::string written = blanksLike(line.text.substr(0, line.indent)) + nameOf(line) + line.separator +
                                    (line.quote != '\0' ? std::string(1, line.quote) : "");
        std::string start = section.empty() ? "(?:^|\\n)" : "\\n";
        if (begin <= markSize(text)) {
            start = begin == 0 ? "(?:^|\\n)" : "(?:^(?:\\xEF\\xBB\\xBF)?|\\n)";
        }
        const auto offer = [&](const std::string& context) { place.surroundings.push_back({context, behind}); };
        offer(start + written);
        if (!section.empty()) {
            const std::string head = escapePattern(section);
            offer(head + "[^\\[]*\\n" + written);
            offer(head + "[^\\n]*(?:\\n(?!\\[)[^\\n]*)*?\\n" + written);
        }
        offerContexts(written, offer);
        offer("^[\\s\\S]*?\\n" + written);
        found.push_back(std::move(place));
    }

    // The lines in front, first with any values, then as they are.
    template <typename Offer>
    void offerContexts(const std::string& written, const Offer& offer) const {
        for (const bool isExact : {false, true}) {
            std::string context;
            for (std::size_t back = 1; back <= before.size(); ++back) {
                const std::string_view content = before[before.size() - back];
                const auto line = readLine(content);
                context = (line && !isExact ? blanksLike(line->text.substr(0, line->indent)) + nameOf(*line) +
                                                  line->separator + "[^\\n]*"
                                            : escapePattern(content)) +
                          "\\s*\\n" + context;
                offer("\\n" + context + written);
            }
        }
    }

    static std::string nameOf(const Line& line) {
        return escapePattern(line.text.substr(line.indent, line.nameEnd - line.indent));
    }

    static constexpr std::size_t kContext = 3;

    std::string_view text;
    const WantedSetting& isWanted;
    std::string_view section;
    std::vector<std::string_view> before; // lines of this section
    std::vector<SettingPlace> found;
};

} // namespace

std::vector<SettingPlace> findLineSettings(std::string_view text, const WantedSetting& isWanted) {
    return Reader(text, isWanted).read();
}

} // namespace brisk::workbench
