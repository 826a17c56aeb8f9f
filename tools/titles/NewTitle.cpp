#include "tools/titles/NewTitle.h"

#include "tools/titles/SettingsLocation.h"
#include "tools/titles/VersionStrings.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace brisk::workbench {

namespace {

using Json = nlohmann::ordered_json;

std::size_t separatorOf(const std::string& path) {
    const std::size_t separator = path.find_last_of("\\/");
    return separator == std::string::npos ? 0 : separator + 1;
}

// Signs of ownership are no part of a game's name.
std::string displayName(std::string name) {
    for (const std::string_view sign : {"\xC2\xAE", "\xC2\xA9", "\xE2\x84\xA2", "(R)", "(TM)", "(tm)"}) {
        for (std::size_t at = name.find(sign); at != std::string::npos; at = name.find(sign)) {
            name.erase(at, sign.size());
        }
    }
    const std::size_t begin = std::min(name.find_first_not_of(" \t"), name.size());
    return name.substr(begin, name.find_last_not_of(" \t") + 1 - begin);
}

bool canBeShown(const std::string& text) {
    return std::all_of(text.begin(), text.end(),
                       [](char byte) { return byte >= ' ' && byte <= '~' && byte != '&' && byte != '<'; });
}

bool equalButForCase(const std::string& one, const std::string& other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(), [](char left, char right) {
        const auto isLetter = [](char byte) { return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z'); };
        return left == right || (isLetter(left) && isLetter(right) && (left ^ right) == 0x20);
    });
}

void addExecutable(const NewTitleSources& sources, NewTitle& result) {
    const std::string binaryName = sources.executablePath.substr(separatorOf(sources.executablePath));
    const VersionStrings strings = readVersionStrings(sources.executable);
    const std::string name = displayName(strings.productName);
    result.title["title_name"] = name;
    result.title["publisher"] = strings.companyName;
    result.title["binary_name"] = binaryName;
    if (name.empty()) {
        result.notes.emplace_back("the executable has no product name: fill in \"title_name\"");
    } else if (!canBeShown(name)) {
        result.notes.emplace_back("a notification cannot show \"title_name\" as it is: write it in plain ASCII without "
                                  "'&' and '<'");
    }
    if (strings.companyName.empty()) {
        result.notes.emplace_back("the executable has no company name: it matches whatever \"publisher\" is");
    }
    if (!strings.originalFileName.empty() && !equalButForCase(strings.originalFileName, binaryName)) {
        result.notes.push_back("the executable was once named \"" + strings.originalFileName +
                               "\": \"binary_name\" is the name under which the game runs");
    }
}

void addSettings(const NewTitleSources& sources, NewTitle& result) {
    const std::string gameFolder = sources.executablePath.substr(0, separatorOf(sources.executablePath));
    const std::string location = guessLocation(sources.settingsPath, gameFolder);
    if (location.empty()) {
        result.notes.emplace_back("the settings' path does not tell where they lie on other machines: fill in "
                                  "\"config_locations\"");
    } else {
        result.title["config_locations"].push_back(location);
    }
}

} // namespace

NewTitle makeTitle(const NewTitleSources& sources) {
    NewTitle result;
    result.title = {
        {"id", nullptr},
        {"config_type", "txt"},
        {"title_name", ""},
        {"publisher", ""},
        {"binary_name", ""},
        {"config_locations", Json::array()},
        {"config_fields", Json::array()},
    };
    result.notes.emplace_back("fill in \"id\", the game id under which the host announces the game");
    if (!sources.executablePath.empty()) {
        addExecutable(sources, result);
    }
    if (!sources.settingsPath.empty()) {
        addSettings(sources, result);
    }
    if (result.title["config_fields"].empty()) {
        result.notes.emplace_back(
            "fill in \"config_fields\": `brisktitles key --file FILE:LINE` proposes a setting's key");
    }
    return result;
}

} // namespace brisk::workbench
