#include "tools/titles/KeyMatches.h"

#include "pattern/SettingPattern.h"

#include <algorithm>

namespace brisk::workbench {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kMatches = 100;
constexpr std::size_t kLines = 3; // at either end of a long match
constexpr std::size_t kWidth = 120;

std::string_view textOf(const SourceText& source, const MatchPart& part) {
    return source.text().substr(part.begin, part.end - part.begin);
}

std::string quoted(std::string_view text) {
    constexpr std::size_t kShown = 100;
    std::string shown(text.substr(0, kShown));
    shown = Json(shown).dump(-1, ' ', false, Json::error_handler_t::replace);
    return text.size() > kShown ? shown + "..." : shown;
}

char markAt(const MatchPlaces& match, std::size_t offset) {
    if (offset < match.front().begin || offset >= match.front().end) {
        return ' ';
    }
    // Of groups in each other the outer one is one of the three.
    for (std::size_t group = 1; group < match.size(); ++group) {
        if (offset >= match[group].begin && offset < match[group].end) {
            return static_cast<char>('0' + std::min<std::size_t>(group, 9));
        }
    }
    return '~';
}

bool isCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

// A line and the marks below it; of a long line what stands around the match.
void printLine(std::ostream& out, const SourceText& source, std::size_t number, const MatchPlaces& match) {
    const std::string_view line = source.line(number);
    const std::size_t begin = static_cast<std::size_t>(line.data() - source.text().data());
    std::size_t first = 0;
    if (line.size() > kWidth && match.front().begin > begin + kWidth / 3) {
        first = std::min(match.front().begin - begin, line.size()) - kWidth / 3;
    }
    while (first > 0 && !isCharacter(line[first])) {
        --first;
    }
    std::size_t last = std::min(line.size(), first + kWidth);
    while (last < line.size() && !isCharacter(line[last])) {
        ++last;
    }
    std::string shown;
    std::string marks;
    for (std::size_t at = first; at < last; ++at) {
        shown += static_cast<unsigned char>(line[at]) < ' ' ? ' ' : line[at];
        if (isCharacter(line[at])) {
            marks += markAt(match, begin + at);
        }
    }
    if (last == line.size()) {
        marks += markAt(match, begin + last); // of the line's end
    }
    marks.erase(marks.find_last_not_of(' ') + 1);
    out << "    " << shown << '\n';
    if (!marks.empty()) {
        out << "    " << marks << '\n';
    }
}

} // namespace

FoundMatches findMatches(const std::string& expression, std::string_view text) {
    FoundMatches found;
    SettingPattern(expression).forEachMatch(text, [&](const SettingPattern::Match& match) {
        if (++found.count <= kMatches) {
            MatchPlaces places;
            const std::size_t end = static_cast<std::size_t>(match.front().data() - text.data()) + match.front().size();
            for (const std::string_view part : match) {
                // A group that took no part stands nowhere.
                const std::size_t begin = part.data() ? static_cast<std::size_t>(part.data() - text.data()) : end;
                places.push_back({begin, begin + part.size()});
            }
            found.first.push_back(std::move(places));
        }
        return true;
    });
    return found;
}

void printMatch(std::ostream& out, const SourceText& source, const MatchPlaces& match, std::size_t number) {
    const Place place = source.placeOf(match.front().begin);
    out << source.path() << ':' << place.line << ':' << place.column << ": match " << number;
    for (std::size_t group = 1; group < match.size(); ++group) {
        out << (group == 1 ? ": " : ", ") << group << ' ' << quoted(textOf(source, match[group]));
    }
    out << '\n';
    // A line end belongs to the line that it ends.
    const std::size_t last = source.placeOf(std::max(match.front().begin + 1, match.front().end) - 1).line;
    for (std::size_t line = place.line; line <= last; ++line) {
        if (line - place.line == kLines && last - line >= kLines) {
            out << "    ...\n";
            line = last - kLines + 1;
        }
        printLine(out, source, line, match);
    }
}

nlohmann::ordered_json toJson(const SourceText& source, const MatchPlaces& match) {
    const auto describe = [&](const MatchPart& part) {
        const Place place = source.placeOf(part.begin);
        return Json{{"line", place.line}, {"column", place.column}, {"text", textOf(source, part)}};
    };
    Json json = describe(match.front());
    json["groups"] = Json::array();
    for (std::size_t group = 1; group < match.size(); ++group) {
        json["groups"].push_back(describe(match[group]));
    }
    return json;
}

} // namespace brisk::workbench
