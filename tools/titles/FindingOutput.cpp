#include "tools/titles/FindingOutput.h"

#include "tools/titles/AsciiText.h"

#include <algorithm>
#include <cctype>

namespace brisk::workbench {

namespace {

constexpr std::size_t kShownWidth = 160; // characters of a source line

bool beginsCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

// What a control character would do to a terminal, or to a finding of one line, is not done.
std::string printable(std::string_view text) {
    std::string shown(text);
    std::replace_if(
        shown.begin(), shown.end(),
        [](char byte) { return (static_cast<unsigned char>(byte) < 0x20 && byte != '\t') || byte == '\x7F'; }, '?');
    return shown;
}

// Messages quote keys and values, which may hold anything of any length.
std::string messageOf(const Finding& finding) {
    constexpr std::size_t kLongest = 600; // bytes
    std::string message = finding.message;
    if (message.size() > kLongest) {
        std::size_t tail = message.size() - kLongest / 2;
        std::size_t head = kLongest / 2;
        while (!beginsCharacter(message[head])) {
            --head;
        }
        while (tail < message.size() && !beginsCharacter(message[tail])) {
            ++tail;
        }
        message.replace(head, tail - head, "...");
    }
    std::replace(message.begin(), message.end(), '\t', ' ');
    return printable(message);
}

// A tab keeps its width below itself; everything else a character wide is a blank.
std::string indentTo(std::string_view before) {
    std::string indent;
    for (const char byte : before) {
        if (byte == '\t') {
            indent += '\t';
        } else if (beginsCharacter(byte)) {
            indent += ' ';
        }
    }
    return indent;
}

// The place so many characters before or behind one, or the text's end on that side.
std::size_t stepBack(std::string_view text, std::size_t at, std::size_t characters) {
    while (at > 0 && characters > 0) {
        --at;
        characters -= beginsCharacter(text[at]) ? 1U : 0U;
    }
    return at;
}
std::size_t stepForward(std::string_view text, std::size_t at, std::size_t characters) {
    while (at < text.size() && (characters > 0 || !beginsCharacter(text[at]))) {
        characters -= beginsCharacter(text[at]) ? 1U : 0U;
        ++at;
    }
    return at;
}

// A line may be the whole database: only what stands around the place is looked at and shown.
void printCaret(std::ostream& out, const SourceText& source, const Finding& finding, bool hasColours) {
    const std::string_view line = source.line(source.placeOf(finding.begin).line);
    const auto lineBegin = static_cast<std::size_t>(line.data() - source.text().data());
    const std::size_t caret = std::min(finding.begin - lineBegin, line.size());
    const bool isWhole = stepForward(line, 0, kShownWidth) == line.size();
    const std::size_t first = isWhole ? 0 : stepBack(line, caret, kShownWidth / 2);
    const std::string_view shown = line.substr(first, stepForward(line, first, kShownWidth) - first);
    const std::size_t end = std::min(finding.end - finding.begin, shown.size() - std::min(shown.size(), caret - first));
    const std::size_t length = std::max<std::size_t>(1, countCharacters(shown.substr(caret - first, end)));
    out << "    " << printable(shown) << "\n    " << indentTo(shown.substr(0, caret - first))
        << (hasColours ? "\x1B[32m" : "") << '^' << std::string(length - 1, '~') << (hasColours ? "\x1B[0m" : "")
        << '\n';
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

// A path as a relative reference: what is neither unreserved nor a separator is escaped.
std::string uriOf(std::string_view path) {
    constexpr std::string_view kPlain = "-._~/";
    std::string uri;
    for (const char byte : path) {
        const auto code = static_cast<unsigned char>(byte);
        if (byte == '\\') {
            uri += '/';
        } else if (code < 0x80 && (std::isalnum(code) != 0 || kPlain.find(byte) != std::string_view::npos)) {
            uri += byte;
        } else {
            uri += '%' + hexadecimal(byte);
        }
    }
    const bool isDrive = path.size() > 1 && path[1] == ':' && std::isalpha(static_cast<unsigned char>(path[0])) != 0;
    return isDrive ? "file:///" + std::string(1, path[0]) + ':' + uri.substr(4) : uri;
}

} // namespace

void printFinding(std::ostream& out, const SourceText& source, const Finding& finding, bool hasColours) {
    const Place place = source.placeOf(finding.begin);
    out << source.path() << ':' << place.line << ':' << place.column << ": "
        << (hasColours ? colourOf(finding.severity) : "") << nameOf(finding.severity) << '[' << finding.rule << ']'
        << (hasColours ? "\x1B[0m" : "") << ": " << messageOf(finding) << '\n';
    printCaret(out, source, finding, hasColours);
}

void printGithubFinding(std::ostream& out, const SourceText& source, const Finding& finding) {
    const Place place = source.placeOf(finding.begin);
    const char* command = finding.severity == Severity::Note ? "notice" : nameOf(finding.severity);
    out << "::" << command << " file=" << escaped(source.path(), true) << ",line=" << place.line
        << ",col=" << place.column << ",title=" << escaped(finding.rule, true)
        << "::" << escaped(messageOf(finding), false) << '\n';
}

nlohmann::ordered_json toJson(const SourceText& source, const Finding& finding) {
    const Place place = source.placeOf(finding.begin);
    nlohmann::ordered_json json{{"rule", finding.rule},   {"severity", nameOf(finding.severity)},
                                {"file", source.path()},  {"line", place.line},
                                {"column", place.column}, {"message", messageOf(finding)}};
    json["title"] = finding.title ? nlohmann::ordered_json(*finding.title) : nlohmann::ordered_json();
    return json;
}

nlohmann::ordered_json toSarifResult(const SourceText& source, const Finding& finding) {
    const Place place = source.placeOf(finding.begin);
    return {{"ruleId", finding.rule},
            {"level", nameOf(finding.severity)},
            {"message", {{"text", messageOf(finding)}}},
            {"locations",
             {{{"physicalLocation",
                {{"artifactLocation", {{"uri", uriOf(source.path())}}},
                 {"region", {{"startLine", place.line}, {"startColumn", place.column}}}}}}}}};
}

} // namespace brisk::workbench
