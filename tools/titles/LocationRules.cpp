#include "tools/titles/LocationRules.h"

#include "tools/titles/ProfileFiles.h"
#include "tools/titles/Suggestion.h"
#include "tools/titles/TitleParts.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <iterator>
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

void checkPlaceholders(const JsonValue& location, Report& report) {
    const std::string& path = location.text();
    const std::vector<std::string_view>& known = placeholders();
    for (const std::string_view part : findPlaceholders(path)) {
        if (std::find(known.begin(), known.end(), part) == known.end()) {
            report.add(Severity::Error, "unknown-placeholder", location,
                       "\"" + std::string(part) +
                           "\" is no placeholder and stays as it is, so the file is never found" +
                           didYouMean(part, known));
        }
    }
    for (const std::string_view placeholder : known) {
        if (count(path, placeholder) > 1) {
            report.add(Severity::Error, "repeated-placeholder", location,
                       "\"" + std::string(placeholder) + "\" is replaced once only; the second one stays as it is");
        }
    }
    if (const std::size_t at = path.find(kAppDirectory); at != std::string::npos && at != 0) {
        report.add(Severity::Error, "misplaced-placeholder", location,
                   "%APPDIR%, the folder of the running game, stands for a whole path: it belongs at the beginning");
    } else if (const auto inner = std::find_if(known.begin(), known.end(),
                                               [&path](std::string_view placeholder) {
                                                   const std::size_t place = path.find(placeholder);
                                                   return place != std::string::npos && place != 0;
                                               });
               inner != known.end()) {
        report.add(Severity::Error, "misplaced-placeholder", location,
                   "\"" + std::string(*inner) + "\" stands for a whole path: it belongs at the beginning");
    }
}

void checkWildcards(const JsonValue& location, Report& report) {
    const std::string& path = location.text();
    const std::size_t star = path.find('*');
    if (path.find('?') != std::string::npos) {
        report.add(Severity::Error, "wildcard-in-name", location, "'?' is no wildcard, and no file's name has one");
    }
    if (star == std::string::npos) {
        return;
    }
    const bool beginsName = star > 0 && isSeparator(path[star - 1]);
    const bool endsName = star + 1 == path.size() || isSeparator(path[star + 1]);
    if (!beginsName || !endsName) {
        report.add(
            Severity::Error, "wildcard-in-name", location,
            "'*' stands for the whole name of a folder, not for a part of a name: such a location is never found");
    } else if (star + 1 == path.size()) {
        report.add(Severity::Error, "wildcard-last", location,
                   "'*' stands for a folder, never for a file: the name of the file must follow it");
    }
    if (path.find('*', star + 1) != std::string::npos) {
        report.add(Severity::Error, "second-wildcard", location,
                   "only the first '*' is replaced; with a second one the file is never found");
    }
}

void checkTextLocation(const JsonValue& location, Report& report) {
    const std::string& path = location.text();
    if (path.starts_with("HKEY_")) {
        report.add(Severity::Error, "relative-path", location,
                   "this is a registry key; a title with such a location has \"config_type\": \"reg\"");
        return;
    }
    checkPlaceholders(location, report);
    checkWildcards(location, report);
    if (!startsAnywhere(path)) {
        report.add(Severity::Error, "relative-path", location,
                   "a path that begins at no drive and no placeholder is looked for in the folder in which the service "
                   "happens to run; begin with %APPDIR%\\ or another placeholder");
    } else if (!path.empty() && isSeparator(path.back())) {
        report.add(Severity::Error, "folder-location", location, "this names a folder; the file's name is missing");
    }
}

// A folder that is there whether the game is installed or not.
bool isInFolderThatExists(std::string_view location) {
    const std::size_t last = location.find_last_of("\\/");
    return last != std::string_view::npos &&
           std::find(placeholders().begin(), placeholders().end(), location.substr(0, last)) != placeholders().end();
}

void checkOrder(const JsonValue& locations, Report& report) {
    for (std::size_t index = 0; index + 1 < locations.items.size(); ++index) {
        const JsonValue& location = locations.items[index];
        if (location.isString() && isInFolderThatExists(location.text())) {
            report.add(
                Severity::Warning, "created-location", location,
                "its folder exists also where the settings are in a later location: adjusting would create a new "
                "file here and leave the player's own as it is; put this location last");
        }
    }
}

void checkRegistryLocations(const JsonValue& locations, Report& report) {
    if (locations.items.size() > 1) {
        report.add(Severity::Warning, "registry-locations", locations.items[1],
                   "only the first location of a registry title is used");
    }
    const JsonValue& location = locations.items.front();
    if (!location.isString()) {
        return;
    }
    const std::string& path = location.text();
    const std::size_t slash = path.find('/');
    const std::string root = path.substr(0, path.find_first_of("\\/"));
    if (std::find(kRoots.begin(), kRoots.end(), root) == kRoots.end()) {
        report.add(Severity::Error, "registry-root", location,
                   "the root of a registry location is HKEY_CURRENT_USER, written in full, and a slash" +
                       didYouMean(root, kRoots));
        return;
    }
    if (slash == std::string::npos || slash != root.size()) {
        report.add(Severity::Error, "registry-slash", location,
                   "between the root and the key's path stands a slash, not a backslash: " + root + "/...");
    } else if (slash + 1 == path.size()) {
        report.add(Severity::Error, "registry-root", location, "the path of the key is missing behind the root");
    }
    if (root == "HKEY_LOCAL_MACHINE") {
        report.add(Severity::Warning, "registry-machine", location,
                   "the service runs without elevation, and Windows refuses it every right on a key of "
                   "HKEY_LOCAL_MACHINE: the title is never found");
    }
}

} // namespace

void checkLocations(const JsonValue& title, Report& report) {
    const JsonValue* locations = findArray(title, "config_locations");
    if (!locations || locations->items.empty()) {
        return;
    }
    if (isRegistryTitle(title)) {
        checkRegistryLocations(*locations, report);
        return;
    }
    for (const JsonValue& location : locations->items) {
        if (location.isString()) {
            checkTextLocation(location, report);
        }
    }
    checkOrder(*locations, report);
}

} // namespace brisk::workbench
