#include "tools/titles/NewTitle.h"

#include "tools/titles/KeyProposal.h"
#include "tools/titles/SettingPlace.h"
#include "tools/titles/SettingsLocation.h"
#include "tools/titles/TextMode.h"
#include "tools/titles/ValueForm.h"
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

// The screen's width and height, wherever the settings have them.
void addFields(const NewTitleSources& sources, NewTitle& result) {
    constexpr std::size_t kMostFields = 12;
    const std::string text = readAsText(sources.settings);
    const auto isNumber = [&text](std::size_t begin, std::size_t end, std::size_t leastDigits) {
        return end - begin >= leastDigits &&
               kindOf(std::string_view(text).substr(begin, end - begin)) == ValueKind::Number;
    };
    // A file of any size has a few of them, or is none of settings.
    constexpr std::size_t kMostPlaces = 200;
    std::size_t count = 0;
    std::vector<SettingPlace> places;
    for (const SettingPlace& place : findSettings(text, [&count](const std::string& name, std::size_t, std::size_t) {
             return (dimensionOf(name) || isScreenName(name)) && ++count <= kMostPlaces;
         })) {
        if (dimensionOf(place.name) && isNumber(place.begin, place.end, 3)) {
            places.push_back(place);
            continue;
        }
        for (const SettingPlace& part : partsOf(text, place)) {
            if (part.name.ends_with(" width") || part.name.ends_with(" height")) {
                places.push_back(part);
            }
        }
    }
    for (const SettingPlace& place : places) {
        if (result.title["config_fields"].size() == kMostFields) {
            break;
        }
        if (const auto proposal = proposeKey(text, place, std::nullopt)) {
            result.title["config_fields"].push_back(proposal->field);
        }
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
    addFields(sources, result);
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
    } else {
        result.notes.emplace_back("fill in \"title_name\", \"publisher\" and \"binary_name\", or give the game's "
                                  "executable: --exe GAME.EXE");
    }
    if (!sources.settingsPath.empty()) {
        addSettings(sources, result);
    } else {
        result.notes.emplace_back("fill in \"config_locations\", or give the game's settings: --file SETTINGS");
    }
    if (result.title["config_fields"].empty()) {
        result.notes.emplace_back(
            "fill in \"config_fields\": `brisktitles key --file FILE:LINE` proposes a setting's key");
    }
    return result;
}

} // namespace brisk::workbench
