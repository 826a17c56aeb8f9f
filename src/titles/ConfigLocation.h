#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brisk {

// Locations of configurations may hold placeholders: the user's folders, replaced when the title database is loaded,
// and for text files the game's folder and one wildcard folder (ConfigFiles.h), replaced when the configuration is
// looked for.

// The game's folder.
inline constexpr std::string_view kAppDirectory = "%APPDIR%";

// Placeholders of the user's folders and what replaces them, in the order of replacement.
using UserFolders = std::vector<std::pair<std::string, std::string>>;

// Replaces the first occurrence of each placeholder, in place.
void expandUserFolders(std::string& location, const UserFolders& userFolders);

// Replaces the first "%APPDIR%" by the game's folder, in place. A location that does not begin with "%" and an empty
// folder leave it as it is.
void expandAppDirectory(std::string& location, const std::string& appDirectory);

// Where text files are looked for: on this machine (ConfigFiles.h), or wherever else.
struct FileLookup {
    std::function<bool(std::string& location)> resolveWildcard;
    std::function<bool(const std::string& location)> exists;
};

// Whether one of the locations exists, with a log line for each that was looked at. Replaces the game's folder and the
// wildcard folder in those, in place. What the lookup throws leaves it.
bool findFirstLocation(std::vector<std::string>& locations, const std::string& appDirectory, const FileLookup& lookup);

} // namespace brisk
