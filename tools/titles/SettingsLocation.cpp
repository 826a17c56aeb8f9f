#include "tools/titles/SettingsLocation.h"

#include "tools/titles/AsciiText.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace brisk::workbench {

namespace {

using Parts = std::vector<std::string>;

Parts partsOf(const std::string& path) {
    constexpr char kSeparators[] = "\\/";
    Parts parts;
    for (std::size_t begin = 0; begin < path.size();) {
        const std::size_t end = std::min(path.find_first_of(kSeparators, begin), path.size());
        if (end > begin) {
            parts.push_back(path.substr(begin, end - begin));
        }
        begin = end + 1;
    }
    return parts;
}

bool isPart(const Parts& parts, std::size_t index, std::string_view name) {
    return index < parts.size() && lowered(parts[index]) == name;
}

// Games keep a folder for each account, named after its number.
bool isAccount(const std::string& part) {
    const std::string name = lowered(part);
    const bool isNumber = name.size() >= 5 && name.find_first_not_of("0123456789") == std::string::npos;
    const bool isHexadecimal = name.size() >= 16 && name.find_first_not_of("0123456789abcdef-_") == std::string::npos &&
                               name.find_first_of("0123456789") != std::string::npos;
    return isNumber || isHexadecimal;
}

std::string join(std::string location, const Parts& parts, std::size_t first) {
    bool hasWildcard = false;
    for (std::size_t index = first; index < parts.size(); ++index) {
        const bool isWildcard = !hasWildcard && index + 1 < parts.size() && isAccount(parts[index]);
        hasWildcard = hasWildcard || isWildcard;
        location += '\\' + (isWildcard ? "*" : parts[index]);
    }
    return location;
}

// Behind one of the user's folders.
std::string inProfile(const Parts& parts) {
    for (std::size_t index = parts.size(); index-- > 0;) {
        if (isPart(parts, index, "appdata")) {
            if (isPart(parts, index + 1, "local")) {
                return join("%LOCALAPPDATA%", parts, index + 2);
            }
            if (isPart(parts, index + 1, "roaming")) {
                return join("%APPDATA%", parts, index + 2);
            }
            return join("%USERPROFILE%", parts, index);
        }
    }
    for (std::size_t index = 0; index + 2 < parts.size(); ++index) {
        if (isPart(parts, index, "users") && !isPart(parts, index + 1, "public")) {
            return join("%USERPROFILE%", parts, index + 2);
        }
    }
    for (std::size_t index = 0; index + 1 < parts.size(); ++index) {
        constexpr auto kFolders = std::to_array<std::string_view>({"onedrive", "documents", "saved games"});
        if (std::find(kFolders.begin(), kFolders.end(), lowered(parts[index])) != kFolders.end()) {
            return join("%USERPROFILE%", parts, index);
        }
        if (isPart(parts, index, "my documents")) {
            return join("%USERPROFILE%\\Documents", parts, index + 1);
        }
    }
    return {};
}

// Below the executable's folder, or beside it: an executable often lies in a folder like bin\x64 of its game.
std::string inGame(const Parts& parts, const Parts& game, std::size_t levelsUp) {
    std::size_t common = 0;
    while (common < game.size() && common + 1 < parts.size() && lowered(parts[common]) == lowered(game[common])) {
        ++common;
    }
    if (game.empty() || common == 0 || game.size() - common > levelsUp) {
        return {};
    }
    std::string location = "%APPDIR%";
    for (std::size_t level = common; level < game.size(); ++level) {
        location += "\\..";
    }
    return join(location, parts, common);
}

} // namespace

std::string guessLocation(const std::string& settingsFile, const std::string& gameFolder) {
    constexpr std::size_t kFewLevels = 3;
    const Parts parts = partsOf(settingsFile);
    const Parts game = partsOf(gameFolder);
    std::string location = inGame(parts, game, 0);
    if (location.empty()) {
        location = inProfile(parts);
    }
    return location.empty() ? inGame(parts, game, kFewLevels) : location;
}

} // namespace brisk::workbench
