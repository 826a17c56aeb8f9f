#include "tools/titles/LocationRules.h"

#include "tools/titles/AsciiText.h"
#include "tools/titles/JsonText.h"
#include "tools/titles/LocationOrder.h"
#include "tools/titles/ProfileFiles.h"
#include "tools/titles/Suggestion.h"
#include "tools/titles/TitleParts.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace brisk::workbench {

namespace {

constexpr std::array<std::string_view, 2> kRoots{"HKEY_CURRENT_USER", "HKEY_LOCAL_MACHINE"};

// Those that the service replaces.
const std::vector<std::string_view>& placeholders() {
    static const UserFolders folders = userFoldersIn({});
    static const std::vector<std::string_view> names = [] {
        std::vector<std::string_view> all{kAppDirectory};
        std::transform(folders.begin(), folders.end(), std::inserter(all, all.begin()),
                       [](const auto& folder) -> std::string_view { return folder.first; });
        return all;
    }();
    return names;
}

bool isSeparator(char byte) {
    return byte == '\\' || byte == '/';
}

std::size_t count(std::string_view text, std::string_view part) {
    std::size_t found = 0;
    for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + part.size())) {
        ++found;
    }
    return found;
}

// What looks like a placeholder: the parts between percent signs that hold no separator.
std::vector<std::string_view> findPlaceholders(std::string_view location) {
    std::vector<std::string_view> found;
    for (std::size_t begin = location.find('%'); begin != std::string_view::npos;) {
        const std::size_t end = location.find('%', begin + 1);
        if (end == std::string_view::npos) {
            break;
        }
        const std::string_view part = location.substr(begin, end + 1 - begin);
        if (std::none_of(part.begin(), part.end(), isSeparator) && part.size() > 2) {
            found.push_back(part);
            begin = location.find('%', end + 1);
        } else {
            begin = end;
        }
    }
    return found;
}

bool startsAnywhere(std::string_view location) {
    const bool isDrive = location.size() > 2 && std::isalpha(static_cast<unsigned char>(location[0])) != 0 &&
                         location[1] == ':' && isSeparator(location[2]);
    const bool isServer = location.size() > 2 && isSeparator(location[0]) && isSeparator(location[1]);
    return location.starts_with('%') || isDrive || isServer;
}

// The findings of one location, with where its parts stand in the database.
class LocationChecks {
public:
    LocationChecks(std::string_view json, const JsonValue& value, Report& output)
        : source(json), location(value), path(value.text()), report(output) {}

    void checkText() {
        if (path.starts_with("HKEY_")) {
            add(Severity::Error, "relative-path", path,
                "this is a registry key; a title with such a location has \"config_type\": \"reg\"");
            return;
        }
        checkPlaceholders();
        checkWildcards();
        checkCharacters();
        if (!startsAnywhere(path)) {
            add(Severity::Error, "relative-path", path,
                "a path that begins at no drive and no placeholder is looked for in the folder in which the service "
                "happens to run; begin with %APPDIR%\\ or another placeholder");
        } else if (isSeparator(path.back()) ||
                   std::find(placeholders().begin(), placeholders().end(), path) != placeholders().end()) {
            add(Severity::Error, "folder-location", path, "this names a folder; the file's name is missing");
        } else if (path.size() > 2 && path[1] == ':' && lowered(path.substr(2)).starts_with(R"(\users\)")) {
            add(Severity::Warning, "own-folder", path.substr(0, 9),
                "this is the folder of one user, and other players have other names; begin with %USERPROFILE%\\, "
                "%LOCALAPPDATA%\\ or %APPDATA%\\");
        }
    }

    void checkRegistry() {
        const std::size_t slash = path.find('/');
        const std::string_view root = path.substr(0, path.find_first_of("\\/"));
        if (std::find(kRoots.begin(), kRoots.end(), root) == kRoots.end()) {
            add(Severity::Error, "registry-root", path,
                "the root of a registry location is HKEY_CURRENT_USER, written in full, and a slash" +
                    didYouMean(root, kRoots));
            return;
        }
        if (slash == std::string_view::npos || slash != root.size()) {
            add(Severity::Error, "registry-slash", path,
                "between the root and the key's path stands a slash, not a backslash: " + std::string(root) + "/...");
        } else if (slash + 1 == path.size()) {
            add(Severity::Error, "registry-root", path, "the path of the key is missing behind the root");
        } else if (const std::size_t empty = emptyName(slash); empty != std::string_view::npos) {
            add(Severity::Error, "registry-slash", path.substr(empty, 1),
                "nothing stands between these two separators, and there is no key without a name");
        }
        if (root == "HKEY_LOCAL_MACHINE") {
            add(Severity::Warning, "registry-machine", root,
                "the service runs without elevation, and Windows refuses it every right on a key of "
                "HKEY_LOCAL_MACHINE: the title is never found");
        }
        const std::vector<std::string_view> parts = findPlaceholders(path);
        if (!parts.empty()) {
            add(Severity::Error, "registry-placeholder", parts.front(),
                "a placeholder stands for a folder, which is no part of a registry key's path");
        } else if (const std::size_t star = path.find('*'); star != std::string_view::npos) {
            add(Severity::Warning, "registry-placeholder", path.substr(star, 1),
                "there are no wildcards in the registry: '*' is looked for as a key of that name");
        }
    }

private:
    void add(Severity severity, const char* rule, std::string_view part, std::string message) {
        const auto begin = static_cast<std::size_t>(part.data() - path.data());
        if (part.size() == path.size()) {
            report.add(severity, rule, location, std::move(message));
            return;
        }
        report.add(severity, rule, placeInText(source, location, begin),
                   placeInText(source, location, begin + part.size()), std::move(message));
    }

    // The second of two separators that follow each other.
    std::size_t emptyName(std::size_t at) const {
        for (; at + 1 < path.size(); ++at) {
            if (isSeparator(path[at]) && isSeparator(path[at + 1])) {
                return at + 1;
            }
        }
        return std::string_view::npos;
    }

    void checkPlaceholders() {
        const std::vector<std::string_view>& known = placeholders();
        const auto isKnown = [&known](std::string_view part) {
            return std::find(known.begin(), known.end(), part) != known.end();
        };
        const std::vector<std::string_view> parts = findPlaceholders(path);
        for (const std::string_view part : parts) {
            if (!isKnown(part)) {
                add(Severity::Error, "unknown-placeholder", part,
                    "\"" + std::string(part) + "\" is no placeholder and stays as it is, so the file is never found" +
                        didYouMean(part, known));
            }
        }
        checkHalfPlaceholders(parts);
        for (const std::string_view placeholder : known) {
            if (count(path, placeholder) > 1) {
                const std::size_t second = path.find(placeholder, path.find(placeholder) + 1);
                add(Severity::Error, "repeated-placeholder", path.substr(second, placeholder.size()),
                    "\"" + std::string(placeholder) + "\" is replaced once only; the second one stays as it is");
            }
        }
        for (const std::string_view part : parts) {
            const auto place = static_cast<std::size_t>(part.data() - path.data());
            const std::string name = "\"" + std::string(part) + "\"";
            if (isKnown(part) && place != 0) {
                if (path.find(part) == place) {
                    add(Severity::Error, "misplaced-placeholder", part,
                        name + " stands for a whole path: it belongs at the beginning");
                }
            } else if (isKnown(part) && part.size() < path.size() && !isSeparator(path[part.size()])) {
                add(Severity::Error, "misplaced-placeholder", part,
                    "a backslash is missing behind " + name +
                        ": what follows would become part of the name of the folder");
            }
        }
    }

    // A percent sign that begins no placeholder is part of a name, unless it is meant for one.
    void checkHalfPlaceholders(const std::vector<std::string_view>& parts) {
        for (std::size_t at = path.find('%'); at != std::string_view::npos; at = path.find('%', at + 1)) {
            const bool isPart = std::any_of(parts.begin(), parts.end(), [&](std::string_view part) {
                return path.data() + at >= part.data() && path.data() + at < part.data() + part.size();
            });
            const std::string_view rest = path.substr(at, path.find_first_of("\\/", at) - at);
            const bool isMeant = std::any_of(placeholders().begin(), placeholders().end(), [&](std::string_view known) {
                return lowered(rest).starts_with(lowered(known.substr(0, known.size() - 1)));
            });
            if (!isPart && (at == 0 || isMeant)) {
                add(Severity::Error, "unknown-placeholder", rest,
                    "\"" + std::string(rest) + "\" is no placeholder and stays as it is, so the file is never found" +
                        didYouMean(std::string(rest) + '%', placeholders()));
            }
        }
    }

    void checkWildcards() {
        const std::size_t star = path.find('*');
        if (const std::size_t mark = path.find('?'); mark != std::string_view::npos) {
            add(Severity::Error, "wildcard-in-name", path.substr(mark, 1),
                "'?' is no wildcard, and no file's name has one");
        }
        if (star == std::string_view::npos) {
            return;
        }
        const bool beginsName = star > 0 && isSeparator(path[star - 1]);
        const bool endsName = star + 1 == path.size() || isSeparator(path[star + 1]);
        if (!beginsName || !endsName) {
            add(Severity::Error, "wildcard-in-name", path.substr(star, 1),
                "'*' stands for the whole name of a folder, not for a part of a name: such a location is never found");
        } else if (star + 1 == path.size()) {
            add(Severity::Error, "wildcard-last", path.substr(star, 1),
                "'*' stands for a folder, never for a file: the name of the file must follow it");
        }
        if (const std::size_t second = path.find('*', star + 1); second != std::string_view::npos) {
            add(Severity::Error, "second-wildcard", path.substr(second, 1),
                "only the first '*' is replaced; with a second one the file is never found");
        }
    }

    void checkCharacters() {
        const auto isForbidden = [](char byte) {
            return static_cast<unsigned char>(byte) < 0x20 || byte == '<' || byte == '>' || byte == '|' || byte == '"';
        };
        const auto found = std::find_if(path.begin(), path.end(), isForbidden);
        if (found != path.end()) {
            add(Severity::Error, "path-character", path.substr(static_cast<std::size_t>(found - path.begin()), 1),
                static_cast<unsigned char>(*found) < 0x20
                    ? "no path has a control character or line break; in JSON a backslash is written twice"
                    : std::string("no path has the character '") + *found + "', so the file is never found");
        } else if (path.ends_with(' ')) {
            add(Severity::Warning, "path-character", path.substr(path.size() - 1),
                "a blank at the end of a path: no file's name ends in one");
        }
    }

    std::string_view source;
    const JsonValue& location;
    std::string_view path;
    Report& report;
};

} // namespace

void checkLocations(std::string_view source, const JsonValue& title, Report& report) {
    const JsonValue* locations = findArray(title, "config_locations");
    if (!locations || locations->items.empty()) {
        return;
    }
    if (isRegistryTitle(title)) {
        if (locations->items.size() > 1) {
            report.add(Severity::Warning, "registry-locations", locations->items[1],
                       "only the first location of a registry title is used");
        }
        if (locations->items.front().isString()) {
            LocationChecks(source, locations->items.front(), report).checkRegistry();
        }
        return;
    }
    for (const JsonValue& location : locations->items) {
        if (location.isString()) {
            LocationChecks(source, location, report).checkText();
        }
    }
    checkLocationOrder(*locations, report);
}

} // namespace brisk::workbench
