#include "tools/log/Redaction.h"

#include <algorithm>
#include <array>
#include <vector>

namespace brisk::logbook {

namespace {

constexpr std::string_view kPlaceholder = "(user)";
// What no name of a file or folder on Windows holds.
constexpr std::string_view kEnds = "\"<>|:*?\r\n\t";
constexpr std::array<std::string_view, 4> kShared{"public", "default", "all users", "default user"};

std::string toSmall(std::string_view text) {
    std::string small(text);
    std::transform(small.begin(), small.end(), small.begin(),
                   [](char byte) { return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte; });
    return small;
}

bool isSeparator(char byte) {
    return byte == '\\' || byte == '/';
}

// A part of a path between two separators.
struct Segment {
    std::size_t begin;
    std::size_t end;
    bool isClosed; // a separator follows
};

// The parts that follow a separator.
std::vector<Segment> findSegments(std::string_view text) {
    std::vector<Segment> segments;
    std::size_t at = 0;
    while ((at = text.find_first_of("\\/", at)) != std::string_view::npos) {
        while (at < text.size() && isSeparator(text[at])) {
            ++at;
        }
        const std::size_t begin = at;
        while (at < text.size() && !isSeparator(text[at]) && kEnds.find(text[at]) == std::string_view::npos) {
            ++at;
        }
        if (at > begin) {
            segments.push_back({begin, at, at < text.size() && isSeparator(text[at])});
        }
    }
    return segments;
}

bool isFolderOfUsers(const std::string& name) {
    return name == "users" || name == "documents and settings" || name == "home";
}

} // namespace

std::string Redaction::apply(std::string_view text) {
    const std::vector<Segment> segments = findSegments(text);
    std::vector<bool> isName(segments.size());
    for (std::size_t index = 0; index < segments.size(); ++index) {
        const Segment& segment = segments[index];
        const std::string name = toSmall(text.substr(segment.begin, segment.end - segment.begin));
        if (index + 1 < segments.size() && segment.isClosed && isFolderOfUsers(name)) {
            isName[index + 1] = true;
        }
        if (index > 0 && segments[index - 1].isClosed && name == "appdata") {
            isName[index - 1] = true;
        }
    }
    for (std::size_t index = 0; index < segments.size(); ++index) {
        const Segment& segment = segments[index];
        const std::string name = toSmall(text.substr(segment.begin, segment.end - segment.begin));
        if (name == kPlaceholder || std::find(kShared.begin(), kShared.end(), name) != kShared.end()) {
            isName[index] = false;
        } else if (isName[index] && segment.isClosed) {
            names.insert(name);
        }
    }
    std::string redacted;
    std::size_t done = 0;
    for (std::size_t index = 0; index < segments.size(); ++index) {
        const Segment& segment = segments[index];
        const bool isKnown =
            segment.isClosed && names.contains(toSmall(text.substr(segment.begin, segment.end - segment.begin)));
        if (isName[index] || isKnown) {
            redacted += text.substr(done, segment.begin - done);
            redacted += kPlaceholder;
            done = segment.end;
        }
    }
    return redacted += text.substr(done);
}

} // namespace brisk::logbook
