#include "tools/titles/PreviewOutput.h"

#include "tools/titles/PreviewWords.h"

#include <algorithm>
#include <set>
#include <string_view>

namespace brisk::workbench {

namespace {

constexpr std::size_t kShownPlaces = 8;

std::string describePlaces(const KeyMatches& matches, const SourceText& source) {
    std::string text;
    for (std::size_t at = 0; at < std::min(matches.places.size(), kShownPlaces); ++at) {
        const Place place = source.placeOf(matches.places[at].begin);
        text += (at > 0 ? ", " : "") + std::to_string(place.line) + ":" + std::to_string(place.column);
    }
    return text + (matches.count > kShownPlaces ? ", ..." : "");
}

std::string describeFound(const KeyMatches& matches, const std::string& current, const SourceText& source) {
    if (matches.count == 0) {
        return "missing";
    }
    return (matches.places.empty() ? std::string() : "at " + describePlaces(matches, source) + ": ") +
           inQuotes(current);
}

std::string describeAllowed(const PatchCondition& condition) {
    std::string text;
    for (const std::string& value : condition.presenceValues) {
        text += (text.empty() ? "" : ", ") + inQuotes(value);
    }
    for (const std::int32_t number : condition.presenceNumbers) {
        text += (text.empty() ? "" : ", ") + std::to_string(number);
    }
    return text.empty() ? "anything" : text;
}

void printLocations(std::ostream& out, const TitlePreview& preview) {
    for (const PreviewFile& file : preview.files) {
        const char* state = preview.isRegistry ? (file.isReadable ? "a key" : "not there, or no right to it")
                            : file.isReadable  ? (file.isWritable ? "a file" : "a file that cannot be written")
                            : file.isWritable  ? "not there; would be created"
                                               : "not there";
        out << "  location " << file.location << ": " << state << '\n';
    }
    if (preview.isFound && preview.readLocation != preview.writtenLocation) {
        out << "  READ from " << (preview.readLocation.empty() ? "nowhere" : preview.readLocation)
            << ", but WRITTEN to " << (preview.writtenLocation.empty() ? "nowhere" : preview.writtenLocation) << '\n';
    }
}

void printLog(std::ostream& out, const std::string& log) {
    std::string_view rest = log;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        out << "  log: " << withoutControls(rest.substr(0, end)) << '\n';
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
}

void printDiff(std::ostream& out, const std::string& diff, const TitlePreview& preview, bool hasColours) {
    if (diff.empty()) {
        return;
    }
    out << "--- " << preview.readLocation << "\n+++ " << preview.writtenLocation << '\n';
    std::string_view rest = diff;
    while (!rest.empty()) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        const char* colour = line.starts_with('-')   ? "\x1B[31m"
                             : line.starts_with('+') ? "\x1B[32m"
                             : line.starts_with('@') ? "\x1B[36m"
                                                     : "";
        out << (hasColours ? colour : "") << withoutControls(line) << (hasColours && *colour != '\0' ? "\x1B[0m" : "")
            << '\n';
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    }
}

std::string describeEnd(const std::optional<ServiceEnd>& end) {
    return end ? " (" + end->what + ")" : std::string();
}

} // namespace

SourceText settingsSource(const TitlePreview& preview) {
    return SourceText(preview.readLocation, preview.text);
}

void printPreview(std::ostream& out, const TitlePreview& preview, const Display& display, bool hasColours) {
    const SourceText source = settingsSource(preview);
    out << (hasColours ? "\x1B[1m" : "") << headOf(preview) << " on " << describe(display)
        << (hasColours ? "\x1B[0m" : "") << '\n';
    printLocations(out, preview);
    if (preview.traits) {
        out << "  text: " << describe(*preview.traits) << '\n';
    }
    for (const ConditionPreview& condition : preview.conditions) {
        out << "  condition " << inQuotes(condition.condition.key) << ' '
            << describeFound(condition.matches, condition.current, source) << ": "
            << (condition.end     ? "the service would end"
                : condition.holds ? "holds"
                                  : "does not hold")
            << ", allowed " << describeAllowed(condition.condition)
            << (condition.condition.absence ? " or missing" : "") << describeEnd(condition.end) << '\n';
    }
    for (const FieldPreview& field : preview.fields) {
        out << "  setting " << inQuotes(field.key) << ' ' << describeFound(field.matches, field.current, source) << ": "
            << describeOutcome(field, preview.isRegistry) << describeEnd(field.end) << '\n';
    }
    for (std::size_t at = 0; at < preview.passes.size(); ++at) {
        const PassPreview& pass = preview.passes[at];
        out << (at == 0 ? "  verdict: " : "  pass " + std::to_string(at + 1) + ": ") << nameOf(pass.verdict)
            << (at > 0 && pass.verdict == Verdict::Adjusted ? " again" : "") << '\n';
        printLog(out, pass.log);
        printDiff(out, pass.diff, preview, hasColours);
    }
}

void printMatrix(std::ostream& out, const std::vector<Display>& displays, const std::vector<TitlePreview>& previews) {
    out << headOf(previews.front()) << '\n';
    for (std::size_t at = 0; at < displays.size(); ++at) {
        out << "  " << describe(displays[at]) << ": " << nameOf(previews[at].passes.front().verdict)
            << (previews[at].settles ? "" : ", never settles") << '\n';
    }
    const auto fullest =
        std::max_element(previews.begin(), previews.end(), [](const TitlePreview& one, const TitlePreview& other) {
            return one.fields.size() < other.fields.size();
        });
    for (std::size_t field = 0; field < fullest->fields.size(); ++field) {
        std::vector<std::string> outcomes;
        outcomes.reserve(previews.size());
        for (const TitlePreview& preview : previews) {
            outcomes.push_back(field < preview.fields.size()
                                   ? describeOutcome(preview.fields[field], preview.isRegistry)
                                   : "nothing happens");
        }
        // Where there is nothing at all to happen, the verdict has said so.
        std::set<std::string> different;
        for (std::size_t at = 0; at < previews.size(); ++at) {
            if (field < previews[at].fields.size()) {
                different.insert(outcomes[at]);
            }
        }
        if (different.size() < 2) {
            continue;
        }
        out << "  setting " << inQuotes(fullest->fields[field].key) << '\n';
        for (std::size_t at = 0; at < displays.size(); ++at) {
            out << "    " << describe(displays[at]) << ": " << outcomes[at] << '\n';
        }
    }
}

} // namespace brisk::workbench
