#include "tools/titles/LocationOrder.h"

#include "tools/titles/AsciiText.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brisk::workbench {

namespace {

// The parts of the path of a location's folder, in small letters, with the folders of placeholders in one form.
std::vector<std::string> folderOf(std::string_view location) {
    std::string path = lowered(location);
    std::replace(path.begin(), path.end(), '/', '\\');
    static constexpr std::pair<std::string_view, std::string_view> kFolders[] = {
        {"%localappdata%", R"(%userprofile%\appdata\local)"}, {"%appdata%", R"(%userprofile%\appdata\roaming)"}};
    for (const auto& [name, folder] : kFolders) {
        if (path.starts_with(name)) {
            path.replace(0, name.size(), folder);
        }
    }
    std::vector<std::string> parts;
    for (std::size_t begin = 0; begin <= path.size();) {
        const std::size_t end = std::min(path.find('\\', begin), path.size());
        parts.push_back(path.substr(begin, end - begin));
        begin = end + 1;
    }
    parts.pop_back();
    return parts;
}

// Folders that are there whether a game is installed or not.
bool existsAnyway(const std::vector<std::string>& folder) {
    static constexpr auto kOfUser = std::to_array<std::string_view>(
        {"documents", "saved games", "desktop", "downloads", "pictures", "music", "videos", "appdata"});
    static constexpr auto kOfData = std::to_array<std::string_view>({"local", "locallow", "roaming"});
    const auto isOneOf = [](const auto& names, const std::string& name) {
        return std::find(names.begin(), names.end(), name) != names.end();
    };
    if (folder.size() == 1) {
        return folder[0] == "%userprofile%" || folder[0] == "%appdir%" ||
               (folder[0].size() == 2 && folder[0][1] == ':');
    }
    return !folder.empty() && folder[0] == "%userprofile%" &&
           ((folder.size() == 2 && isOneOf(kOfUser, folder[1])) ||
            (folder.size() == 3 && folder[1] == "appdata" && isOneOf(kOfData, folder[2])));
}

// Whether the one folder is the other one or lies around it.
bool contains(const std::vector<std::string>& outer, const std::vector<std::string>& inner) {
    return !outer.empty() && outer.size() <= inner.size() &&
           std::equal(outer.begin(), outer.end(), inner.begin(),
                      [](const std::string& one, const std::string& other) { return one == "*" || one == other; });
}

} // namespace

void checkLocationOrder(const JsonValue& locations, Report& report) {
    constexpr std::size_t kMost = 200; // compared with each other
    std::vector<std::vector<std::string>> folders;
    for (std::size_t index = 0; index < std::min(locations.items.size(), kMost); ++index) {
        const JsonValue& location = locations.items[index];
        folders.push_back(location.isString() ? folderOf(location.text()) : std::vector<std::string>());
    }
    for (std::size_t index = 0; index + 1 < folders.size(); ++index) {
        const bool isAround =
            std::any_of(folders.begin() + static_cast<std::ptrdiff_t>(index) + 1, folders.end(),
                        [&](const std::vector<std::string>& later) { return contains(folders[index], later); });
        if (existsAnyway(folders[index]) || isAround) {
            report.add(
                Severity::Warning, "created-location", locations.items[index],
                "its folder exists also where the settings are in a later location: adjusting would create a new "
                "file here and leave the player's own as it is; put this location last");
        }
    }
}

} // namespace brisk::workbench
