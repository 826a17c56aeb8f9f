#include "tools/log/LogLine.h"

#include "tools/log/CapturePrefix.h"
#include "tools/log/LineTable.h"

#include <algorithm>
#include <functional>

namespace brisk::logbook {

namespace {

constexpr std::string_view kName = "Brisk ";
constexpr std::string_view kFront = "Brisk : ";
constexpr std::string_view kStarted = " : started";
// The one line without a front besides the start's.
constexpr std::string_view kOddToast = "Passed wrong number of lines to toast. Must be divisible by two";

// The version of "Brisk 1.09 : started".
std::optional<std::string_view> startedVersion(std::string_view text) {
    if (!text.ends_with(kStarted) || text.size() <= kName.size() + kStarted.size()) {
        return std::nullopt;
    }
    const std::string_view version = text.substr(kName.size(), text.size() - kName.size() - kStarted.size());
    return version.find_first_not_of("0123456789.") == std::string_view::npos ? std::optional(version) : std::nullopt;
}

// Whether a line of the service may begin at the place, where its name stands.
bool mayBegin(std::string_view text, std::size_t at) {
    const std::string_view rest = text.substr(at + kName.size());
    return rest.starts_with(": ") || (!rest.empty() && rest.front() >= '0' && rest.front() <= '9');
}

std::size_t findName(std::string_view text, std::size_t from) {
    for (std::size_t at = text.find(kName, from); at != std::string_view::npos; at = text.find(kName, at + 1)) {
        if (mayBegin(text, at)) {
            return at;
        }
    }
    return std::string_view::npos;
}

bool isBlank(char byte) {
    return byte == ' ' || byte == '\t' || byte == '\r';
}

std::string_view withoutBlanks(std::string_view text) {
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

bool isKnown(LineKind kind) {
    return kind != LineKind::Unknown && kind != LineKind::Foreign;
}

// The text reaches to the line's end, or to the next line's begin.
LogLine readPiece(std::string_view text, bool hasEnd) {
    LogLine line;
    line.text = withoutBlanks(text);
    line.isWhole = hasEnd || line.text.size() < text.size();
    if (line.text.starts_with(kFront)) {
        const Classified classified = classify(line.text.substr(kFront.size()));
        line.kind = line.isWhole || !classified.isOpen ? classified.kind : LineKind::Unknown;
        line.value = classified.value;
    } else if (const auto version = startedVersion(line.text)) {
        line.kind = LineKind::Started;
        line.value = *version;
    }
    line.isWhole = line.isWhole || isKnown(line.kind);
    return line;
}

LogLine readWithoutName(std::string_view text, bool isWhole) {
    LogLine line;
    line.text = text;
    line.isWhole = isWhole;
    if (text.starts_with("# ")) {
        line.kind = LineKind::Head;
        line.value = text.substr(2);
    } else if (text.ends_with(kOddToast)) {
        line.text = kOddToast;
        line.kind = LineKind::ToastRefused;
    }
    return line;
}

} // namespace

void LineSplitter::split(std::string_view text, std::uint64_t number, bool isWhole, const Handler& handle) {
    if (std::all_of(text.begin(), text.end(), isBlank)) {
        return;
    }
    // Nearly every line of a log that is none of a capture.
    if (text.starts_with(kFront) && findName(text, kFront.size()) == std::string_view::npos) {
        LogLine line = readPiece(text, isWhole);
        line.number = number;
        line.kind = isKnown(line.kind) ? line.kind : LineKind::Unknown;
        handle(line);
        return;
    }
    const std::size_t first = text.starts_with("# ") ? std::string_view::npos : findName(text, 0);
    if (first == std::string_view::npos) {
        LogLine line = readWithoutName(withoutBlanks(text), isWhole);
        line.number = number;
        line.processId = readCapturePrefix(text).processId;
        handle(line);
        return;
    }
    const CapturePrefix prefix = readCapturePrefix(text.substr(0, first));
    if (prefix.isQuoted) {
        text = withoutBlanks(text);
        text.remove_suffix(text.ends_with("\\n\"") ? 3 : text.ends_with('"') ? 1 : 0);
    }
    std::vector<std::size_t> begins;
    for (std::size_t at = first; at != std::string_view::npos; at = findName(text, at + 1)) {
        begins.push_back(at);
    }
    // From the end on: a piece reaches to the next one that is known, and a name within a text makes none.
    pieces.clear();
    std::size_t end = text.size();
    bool hasEnd = isWhole;
    for (std::size_t index = begins.size(); index-- > 0;) {
        LogLine piece = readPiece(text.substr(begins[index], end - begins[index]), hasEnd);
        if (index > 0 && !isKnown(piece.kind)) {
            continue;
        }
        if (!isKnown(piece.kind)) {
            piece.kind = LineKind::Unknown;
        }
        piece.number = number;
        piece.time = prefix.time;
        piece.processId = prefix.processId;
        pieces.push_back(piece);
        end = begins[index];
        // In front of a start another log may have been cut; in front of other lines an end was lost.
        hasEnd = piece.kind != LineKind::Started && piece.kind != LineKind::FirstParameter;
    }
    std::for_each(pieces.rbegin(), pieces.rend(), std::cref(handle));
}

} // namespace brisk::logbook
