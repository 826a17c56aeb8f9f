#include "titles/TitleManager.h"

#include "base/Log.h"
#include "base/TextEncoding.h"
#include "titles/PatchConditions.h"
#include "titles/TitleDatabase.h"

#include <fstream>
#include <limits>

#include <nlohmann/json.hpp>
#include <windows.h>

#include <shlobj.h>

namespace brisk {

namespace {

std::string getFolder(int csidl) {
    char path[MAX_PATH] = "";
    // A failed call leaves the path empty.
    SHGetFolderPathA(nullptr, csidl, nullptr, 0, path);
    return path;
}

// The value to create: the database's own, also where a resolution would replace it in an existing setting.
std::string getCreatedValue(const ConfigField& field) {
    std::string created = field.createValue;
    if (const std::size_t star = created.find('*'); star != std::string::npos) {
        created.replace(star, 1, field.value.empty() ? std::to_string(field.intValue) : field.value);
    }
    return created;
}

template <class Value>
bool logNotOptimal(const Value& current, const Value& wanted) {
    logLine("Brisk : game setting '", std::dec, current, "' is not optimal '", wanted, "'.");
    return true;
}

} // namespace

TitleManager::TitleManager()
    : userFolders{{"%USERPROFILE%", getFolder(CSIDL_PROFILE)},
                  {"%LOCALAPPDATA%", getFolder(CSIDL_LOCAL_APPDATA)},
                  {"%APPDATA%", getFolder(CSIDL_APPDATA)}} {}

bool TitleManager::loadTitlesDatabase(const std::string& directory) {
    const std::lock_guard lock(mutex);
    std::ifstream file(toPath(directory + "\\titles_db.json"));
    if (!file) {
        logLine("Brisk : unable to open title database.");
        return false;
    }
    const nlohmann::json database = nlohmann::json::parse(file);
    if (!database.is_array()) {
        logLine("Brisk : unable to parse title database.");
        return !titles.empty();
    }
    for (const nlohmann::json& element : database) {
        const std::shared_ptr<TitleConfigAdapter> title = createTitle(element);
        if (!title) {
            continue;
        }
        if (const auto id = readTitleId(element)) {
            title->id = *id;
            knownIds.insert(*id);
        }
        readTitle(element, userFolders, *title);
        titles[title->binaryName] = title;
    }
    return !titles.empty();
}

bool TitleManager::isTitleSupported(const std::string& publisher, const std::string& binaryName,
                                    const std::string& appDirectory) {
    const std::lock_guard lock(mutex);
    TitleConfigAdapter* title = findTitle(binaryName);
    logLine("Brisk : publisher: '", publisher, "', binary name: '", binaryName, "'.");
    if (!title || (!publisher.empty() && title->publisher != publisher)) {
        return false;
    }
    return title->findConfig(appDirectory);
}

bool TitleManager::isTitleNeedToBeOptimized(const std::string& binaryName) {
    const std::lock_guard lock(mutex);
    TitleConfigAdapter* title = findTitle(binaryName);
    if (!title) {
        return false;
    }
    if (!title->loadConfig()) {
        logLine("Brisk : unable to load configuration.");
        return false;
    }
    return hasDifference(*title) && meetsConditions(*title);
}

bool TitleManager::hasDifference(TitleConfigAdapter& title) const {
    for (const auto& [key, field] : title.configFields) {
        if (!field.value.empty()) {
            if (const std::string current = title.getValue(key, {}); current != field.value) {
                return logNotOptimal(current, field.value);
            }
        } else {
            const std::int32_t wanted = getWantedNumber(field);
            if (const std::int32_t current = title.getIntValue(key, 0); current != wanted) {
                return logNotOptimal(current, wanted);
            }
        }
    }
    return false;
}

bool TitleManager::optimizeTitle(const std::string& binaryName) {
    const std::lock_guard lock(mutex);
    TitleConfigAdapter* title = findTitle(binaryName);
    if (closed || !title || !title->loadConfig() || title->configFields.empty()) {
        return false;
    }
    constexpr std::int32_t kMissing = std::numeric_limits<std::int32_t>::min();
    bool changed = false;
    for (const auto& [key, field] : title->configFields) {
        const bool isNumeric = field.value.empty();
        const bool creates = !field.createKey.empty() && (isNumeric ? title->getIntValue(key, kMissing) == kMissing
                                                                    : title->getValue(key, {}).empty());
        if (creates) {
            changed |= title->setValue(field.createKey, getCreatedValue(field));
        } else if (isNumeric) {
            changed |= title->setIntValue(key, getWantedNumber(field));
        } else {
            changed |= title->setValue(key, field.value);
        }
    }
    if (!changed || !title->saveConfig()) {
        return false;
    }
    logLine("Brisk : '", title->titleName, "' optimized.");
    return true;
}

void TitleManager::close() {
    const std::lock_guard lock(mutex);
    closed = true;
}

void TitleManager::setNativeResolution(std::uint32_t width, std::uint32_t height) {
    const std::lock_guard lock(mutex);
    resolutionValues["native_width"] = static_cast<std::int32_t>(width);
    resolutionValues["native_height"] = static_cast<std::int32_t>(height);
    nativeResolution = {width, height};
}

void TitleManager::setResolution(std::uint32_t width, std::uint32_t height) {
    const std::lock_guard lock(mutex);
    resolutionValues["width"] = static_cast<std::int32_t>(width);
    resolutionValues["height"] = static_cast<std::int32_t>(height);
    resolution = {width, height};
}

std::string TitleManager::getTitleName(const std::string& binaryName) const {
    const std::lock_guard lock(mutex);
    const TitleConfigAdapter* title = findTitle(binaryName);
    return title ? title->titleName : std::string();
}

std::vector<std::string> TitleManager::getBinaryNames() const {
    const std::lock_guard lock(mutex);
    std::vector<std::string> names;
    for (const auto& [name, title] : titles) {
        names.push_back(name);
    }
    return names;
}

bool TitleManager::isLumaSupported(const std::string& binaryName) const {
    const std::lock_guard lock(mutex);
    const TitleConfigAdapter* title = findTitle(binaryName);
    return title && title->lumaVersion != 0;
}

std::string TitleManager::getSettingText(const std::string& binaryName) const {
    const std::lock_guard lock(mutex);
    const TitleConfigAdapter* title = findTitle(binaryName);
    if (!title || title->lumaVersion == 0) {
        return {};
    }
    for (const auto& [key, field] : title->configFields) {
        if (!field.text.empty()) {
            return field.text;
        }
    }
    return {};
}

bool TitleManager::isTitleIdKnown(std::uint32_t id) const {
    const std::lock_guard lock(mutex);
    return knownIds.contains(id);
}

TitleConfigAdapter* TitleManager::findTitle(const std::string& binaryName) const {
    const auto title = titles.find(binaryName);
    return title == titles.end() ? nullptr : title->second.get();
}

std::int32_t TitleManager::getWantedNumber(const ConfigField& field) const {
    const auto resolutionValue = resolutionValues.find(field.meta);
    return resolutionValue == resolutionValues.end() ? field.intValue : resolutionValue->second;
}

} // namespace brisk
