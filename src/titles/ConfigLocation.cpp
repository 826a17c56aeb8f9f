#include "titles/ConfigLocation.h"

#include "base/Log.h"

#include <string_view>

namespace brisk {

namespace {

void replaceFirst(std::string& text, std::string_view placeholder, const std::string& replacement) {
    if (const std::size_t position = text.find(placeholder); position != std::string::npos) {
        text.replace(position, placeholder.size(), replacement);
    }
}

} // namespace

void expandUserFolders(std::string& location, const UserFolders& userFolders) {
    for (const auto& [placeholder, folder] : userFolders) {
        replaceFirst(location, placeholder, folder);
    }
}

void expandAppDirectory(std::string& location, const std::string& appDirectory) {
    if (!appDirectory.empty() && location.starts_with('%')) {
        replaceFirst(location, kAppDirectory, appDirectory);
    }
}

bool findFirstLocation(std::vector<std::string>& locations, const std::string& appDirectory, const FileLookup& lookup) {
    for (std::string& location : locations) {
        expandAppDirectory(location, appDirectory);
        if (!lookup.resolveWildcard(location)) {
            continue;
        }
        logLine("Brisk : checking path '", location, "'.");
        if (lookup.exists(location)) {
            logLine("Brisk : config found.");
            return true;
        }
        logLine("Brisk : config not found.");
    }
    return false;
}

} // namespace brisk
