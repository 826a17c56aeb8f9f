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

constexpr std::size_t kMaximumPieces = 32; // of a line that was glued; the rest stays with the last

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

LogLine readPiece(std::string_view text) {
    LogLine line;
    line.text = text;
    if (text.starts_with(kFront)) {
        const Classified classified = classify(text.substr(kFront.size()));
        line.kind = classified.kind;
        line.value = classified.value;
    } else if (const auto version = startedVersion(text)) {
        line.kind = LineKind::Started;
        line.value = *version;
    }
    return line;
}

LogLine readWithoutName(std::string_view text) {
    LogLine line;
    line.text = text;
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
    if (text.ends_with('\r')) {
        text.remove_suffix(1);
    }
    if (text.find_first_not_of(" \t") == std::string_view::npos) {
        return;
    }
    // Nearly every line of a log that is none of a capture.
    if (text.starts_with(kFront) && findName(text, kFront.size()) == std::string_view::npos) {
        LogLine line = readPiece(text);
        line.number = number;
        line.isWhole = isWhole;
        handle(line);
        return;
    }
    const std::size_t first = text.starts_with("# ") ? std::string_view::npos : findName(text, 0);
    if (first == std::string_view::npos) {
        LogLine line = readWithoutName(text);
        const CapturePrefix prefix = readCapturePrefix(text);
        line.number = number;
        line.processId = prefix.processId;
        line.isWhole = isWhole;
        handle(line);
        return;
    }
    const CapturePrefix prefix = readCapturePrefix(text.substr(0, first));
    if (prefix.isQuoted && text.ends_with("\\n\"")) {
        text.remove_suffix(3);
    }
    std::vector<std::size_t> begins{first};
    for (std::size_t at = findName(text, first + 1); at != std::string_view::npos && begins.size() < kMaximumPieces;
         at = findName(text, at + 1)) {
        begins.push_back(at);
    }
    // From the end on: a piece reaches to the next one that is known, and a name within a text makes none.
    pieces.clear();
    std::size_t end = text.size();
    for (std::size_t index = begins.size(); index-- > 0;) {
        LogLine piece = readPiece(text.substr(begins[index], end - begins[index]));
        const bool isKnown = piece.kind != LineKind::Unknown && piece.kind != LineKind::Foreign;
        if (index > 0 && !isKnown) {
            continue;
        }
        if (piece.kind == LineKind::Foreign) {
            piece.kind = LineKind::Unknown;
        }
        piece.number = number;
        piece.time = prefix.time;
        piece.processId = prefix.processId;
        piece.isWhole = isWhole && end == text.size();
        pieces.push_back(piece);
        end = begins[index];
    }
    std::for_each(pieces.rbegin(), pieces.rend(), std::cref(handle));
}

} // namespace brisk::logbook
