#pragma once

#include <string>
#include <utility>
#include <vector>

namespace brisk {

// Locations of configurations may hold placeholders: the user's folders, replaced when the title database is loaded,
// and for text files the game's folder and one wildcard folder (ConfigFiles.h), replaced when the configuration is
// looked for.

// Placeholders of the user's folders and what replaces them, in the order of replacement.
using UserFolders = std::vector<std::pair<std::string, std::string>>;

// Replaces the first occurrence of each placeholder, in place.
void expandUserFolders(std::string& location, const UserFolders& userFolders);

// Replaces the first "%APPDIR%" by the game's folder, in place. A location that does not begin with "%" and an empty
// folder leave it as it is.
void expandAppDirectory(std::string& location, const std::string& appDirectory);

} // namespace brisk
