#include "tools/log/Redaction.h"

#include "tools/log/LineTable.h"

#include <algorithm>
#include <array>
#include <vector>

namespace brisk::logbook {

namespace {

constexpr std::string_view kPlaceholder = "(user)";
constexpr std::size_t kMaximumNames = 1000;
// What no name of a file or folder on Windows holds.
constexpr std::string_view kEnds = "\"<>|:*?\r\n\t";
constexpr std::array<std::string_view, 5> kShared{"public", "default", "all users", "default user", kPlaceholder};
constexpr std::array<std::string_view, 4> kSystemShares{"admin", "ipc", "print", "fax"};
// Folders of users, in the languages in which Windows has named them.
constexpr std::array<std::string_view, 30> kFolders{"users",
                                                    "home",
                                                    "homes",
                                                    "profile",
                                                    "profiles",
                                                    "documents and settings",
                                                    "benutzer",
                                                    "dokumente und einstellungen",
                                                    "utilisateurs",
                                                    "documents et settings",
                                                    "usuarios",
                                                    "documentos y configuraci\xC3\xB3n",
                                                    "usu\xC3\xA1rios",
                                                    "documentos e configura\xC3\xA7\xC3\xB5\x65s",
                                                    "utilizadores",
                                                    "utenti",
                                                    "documenti e impostazioni",
                                                    "gebruikers",
                                                    "brugere",
                                                    "brukere",
                                                    "anv\xC3\xA4ndare",
                                                    "dokument och inst\xC3\xA4llningar",
                                                    "k\xC3\xA4ytt\xC3\xA4j\xC3\xA4t",
                                                    "u\xC5\xBCytkownicy",
                                                    "u\xC5\xBEivatel\xC3\xA9",
                                                    "pou\xC5\xBE\xC3\xADvatelia",
                                                    "felhaszn\xC3\xA1l\xC3\xB3k",
                                                    "kullan\xC4\xB1\x63\xC4\xB1lar",
                                                    "utilizatori",
                                                    "\xD0\xBF\xD0\xBE\xD0\xBB\xD1\x8C\xD0\xB7\xD0\xBE\xD0\xB2\xD0\xB0"
                                                    "\xD1\x82\xD0\xB5\xD0\xBB\xD0\xB8"};

template <class List>
bool holds(const List& list, std::string_view text) {
    return std::find(list.begin(), list.end(), text) != list.end();
}

std::string toSmall(std::string_view text) {
    std::string small(text);
    std::transform(small.begin(), small.end(), small.begin(),
                   [](char byte) { return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte; });
    return small;
}

bool isSeparator(char byte) {
    return byte == '\\' || byte == '/';
}

// A part of a path, behind a separator.
struct Segment {
    std::size_t begin;
    std::size_t end;
    bool isClosed;  // a separator follows
    bool isServer;  // the first one of "\\server\share"
    bool isChained; // it follows another one
};

std::vector<Segment> findSegments(std::string_view text) {
    std::vector<Segment> segments;
    std::size_t at = 0;
    while ((at = text.find_first_of("\\/", at)) != std::string_view::npos) {
        const std::size_t first = at;
        while (at < text.size() && isSeparator(text[at])) {
            ++at;
        }
        const bool isServer = at - first > 1 && (first == 0 || text[first - 1] != ':');
        while (at < text.size() && (text[at] == '\t' || text[at] == ' ')) {
            ++at;
        }
        const std::size_t begin = at;
        while (at < text.size() && !isSeparator(text[at]) && kEnds.find(text[at]) == std::string_view::npos) {
            ++at;
        }
        const bool isChained = !segments.empty() && segments.back().end == first;
        if (at > begin) {
            segments.push_back(
                {begin, at, at < text.size() && isSeparator(text[at]), isServer && !isChained, isChained});
        }
    }
    return segments;
}

// Where a user's name stands, by the path around it.
std::vector<Segment> findNames(std::string_view text) {
    const std::vector<Segment> segments = findSegments(text);
    const auto nameOf = [text](const Segment& one) { return toSmall(text.substr(one.begin, one.end - one.begin)); };
    std::vector<Segment> found;
    for (std::size_t index = 0; index < segments.size(); ++index) {
        Segment segment = segments[index];
        const std::string name = nameOf(segment);
        std::string before = segment.isChained ? nameOf(segments[index - 1]) : std::string();
        const bool isShare =
            segment.isChained && segments[index - 1].isServer && name.ends_with('$') && name.size() > 2;
        const std::string share = name.substr(0, name.size() - 1);
        if (before.ends_with('$')) {
            before.pop_back();
        }
        const bool isAppData = segment.isClosed && index + 1 < segments.size() && segments[index + 1].isChained &&
                               nameOf(segments[index + 1]) == "appdata";
        const bool isHidden = isShare && !holds(kSystemShares, share) && !holds(kFolders, share);
        if ((!isAppData && !isHidden && !holds(kFolders, before)) || holds(kShared, name)) {
            continue;
        }
        // The quotation around a path is no part of its last name.
        while (!segment.isClosed && segment.end > segment.begin &&
               std::string_view("'.").find(text[segment.end - 1]) != std::string_view::npos) {
            --segment.end;
        }
        segment.end -= isHidden && segment.isClosed ? 1 : 0;
        found.push_back(segment);
    }
    return found;
}

void addNames(std::string_view text, const std::vector<Segment>& found, std::set<std::string>& names) {
    for (const Segment& segment : found) {
        if (segment.isClosed && segment.end > segment.begin && names.size() < kMaximumNames) {
            names.insert(toSmall(text.substr(segment.begin, segment.end - segment.begin)));
        }
    }
}

bool isOfWord(char byte) {
    return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') ||
           byte == '_' || byte == '-' || static_cast<unsigned char>(byte) >= 0x80;
}

// Whether what stands there is a name, and not a part of another word.
bool standsAlone(std::string_view text, std::size_t begin, std::size_t end, bool isOfPathsAlone) {
    const bool isBehindSeparator = begin > 0 && isSeparator(text[begin - 1]);
    if ((end < text.size() && isOfWord(text[end])) || (isOfPathsAlone && !isBehindSeparator)) {
        return false;
    }
    const bool isExtended = end + 1 < text.size() && text[end] == '.' && isOfWord(text[end + 1]);
    return isBehindSeparator || begin == 0 || (!isOfWord(text[begin - 1]) && text[begin - 1] != '.' && !isExtended);
}

} // namespace

void Redaction::learn(std::string_view text) {
    addNames(text, findNames(text), names);
}

std::string Redaction::apply(std::string_view text) const {
    const std::vector<Segment> found = findNames(text);
    std::set<std::string> known = names;
    addNames(text, found, known);
    std::vector<bool> isHidden(text.size());
    const auto hide = [&isHidden](std::size_t begin, std::size_t end) {
        std::fill(isHidden.begin() + static_cast<std::ptrdiff_t>(begin),
                  isHidden.begin() + static_cast<std::ptrdiff_t>(end), true);
    };
    for (const Segment& segment : found) {
        hide(segment.begin, segment.end);
    }
    const std::string small = toSmall(text);
    for (const std::string& name : known) {
        std::size_t at = small.find(name);
        if (at == std::string::npos) {
            continue;
        }
        const bool isOfPathsAlone = name.find_first_not_of("0123456789") == std::string::npos || isOfFixedWords(name);
        for (; at != std::string::npos; at = small.find(name, at + name.size())) {
            if (standsAlone(text, at, at + name.size(), isOfPathsAlone)) {
                hide(at, at + name.size());
            }
        }
    }
    std::string redacted;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (!isHidden[at]) {
            redacted += text[at];
        } else if (at == 0 || !isHidden[at - 1]) {
            redacted += kPlaceholder;
        }
    }
    return redacted;
}

} // namespace brisk::logbook
