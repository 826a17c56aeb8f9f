#include "tools/titles/FindingOutput.h"

#include <algorithm>

namespace brisk::workbench {

namespace {

constexpr std::size_t kShownWidth = 160; // characters of a source line

// A tab keeps its width below itself; everything else a character wide is a blank.
std::string indentTo(std::string_view before) {
    std::string indent;
    for (const char byte : before) {
        if (byte == '\t') {
            indent += '\t';
        } else if ((static_cast<unsigned char>(byte) & 0xC0U) != 0x80U) {
            indent += ' ';
        }
    }
    return indent;
}

// The byte at which the n-th character of a text begins.
std::size_t byteOf(std::string_view text, std::size_t character) {
    std::size_t at = 0;
    for (; at < text.size(); ++at) {
        if ((static_cast<unsigned char>(text[at]) & 0xC0U) != 0x80U) {
            if (character == 0) {
                break;
            }
            --character;
        }
    }
    return at;
}

// A line may be the whole database: only what stands around the place is shown.
void printCaret(std::ostream& out, const SourceText& source, const Finding& finding, bool hasColours) {
    const Place place = source.placeOf(finding.begin);
    const std::string_view line = source.line(place.line);
    const std::size_t caret = std::min(byteOf(line, place.column - 1), line.size());
    std::size_t first = 0;
    if (countCharacters(line) > kShownWidth && place.column > kShownWidth / 2) {
        first = byteOf(line, place.column - kShownWidth / 2);
    }
    const std::size_t last = byteOf(line, countCharacters(line.substr(0, first)) + kShownWidth);
    const std::string_view shown = line.substr(first, last - first);
    const std::size_t end = std::min(finding.end - finding.begin, shown.size() - std::min(shown.size(), caret - first));
    const std::size_t length = std::max<std::size_t>(1, countCharacters(shown.substr(caret - first, end)));
    out << "    " << shown << "\n    " << indentTo(shown.substr(0, caret - first)) << (hasColours ? "\x1B[32m" : "")
        << '^' << std::string(length - 1, '~') << (hasColours ? "\x1B[0m" : "") << '\n';
}

const char* colourOf(Severity severity) {
    switch (severity) {
    case Severity::Error:
        return "\x1B[1;31m";
    case Severity::Warning:
        return "\x1B[1;35m";
    case Severity::Note:
        break;
    }
    return "\x1B[1;36m";
}

// Texts of a workflow command.
std::string escaped(std::string_view text, bool isProperty) {
    std::string result;
    for (const char byte : text) {
        switch (byte) {
        case '%':
            result += "%25";
            break;
        case '\r':
            result += "%0D";
            break;
        case '\n':
            result += "%0A";
            break;
        case ':':
            result += isProperty ? "%3A" : ":";
            break;
        case ',':
            result += isProperty ? "%2C" : ",";
            break;
        default:
            result += byte;
        }
    }
    return result;
}

} // namespace

void printFinding(std::ostream& out, const SourceText& source, const Finding& finding, bool hasColours) {
    const Place place = source.placeOf(finding.begin);
    out << source.path() << ':' << place.line << ':' << place.column << ": "
        << (hasColours ? colourOf(finding.severity) : "") << nameOf(finding.severity) << '[' << finding.rule << ']'
        << (hasColours ? "\x1B[0m" : "") << ": " << finding.message << '\n';
    printCaret(out, source, finding, hasColours);
}

void printGithubFinding(std::ostream& out, const SourceText& source, const Finding& finding) {
    const Place place = source.placeOf(finding.begin);
    const char* command = finding.severity == Severity::Note ? "notice" : nameOf(finding.severity);
    out << "::" << command << " file=" << escaped(source.path(), true) << ",line=" << place.line
        << ",col=" << place.column << ",title=" << escaped(finding.rule, true)
        << "::" << escaped(finding.message, false) << '\n';
}

nlohmann::ordered_json toJson(const SourceText& source, const Finding& finding) {
    const Place place = source.placeOf(finding.begin);
    nlohmann::ordered_json json{{"rule", finding.rule},   {"severity", nameOf(finding.severity)},
                                {"file", source.path()},  {"line", place.line},
                                {"column", place.column}, {"message", finding.message}};
    json["title"] = finding.title ? nlohmann::ordered_json(*finding.title) : nlohmann::ordered_json();
    return json;
}

nlohmann::ordered_json toSarifResult(const SourceText& source, const Finding& finding) {
    const Place place = source.placeOf(finding.begin);
    return {{"ruleId", finding.rule},
            {"level", nameOf(finding.severity)},
            {"message", {{"text", finding.message}}},
            {"locations",
             {{{"physicalLocation",
                {{"artifactLocation", {{"uri", source.path()}}},
                 {"region", {{"startLine", place.line}, {"startColumn", place.column}}}}}}}}};
}

} // namespace brisk::workbench
