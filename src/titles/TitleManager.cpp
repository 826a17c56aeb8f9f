#include "titles/TitleManager.h"

#include "base/Log.h"
#include "base/TextEncoding.h"
#include "titles/ConfigFiles.h"
#include "titles/JsonElements.h"
#include "titles/RegisterConfigAdapter.h"
#include "titles/TextConfigAdapter.h"
#include "titles/TitleDatabase.h"

#include <exception>
#include <fstream>
#include <optional>
#include <utility>

#include <nlohmann/json.hpp>

namespace brisk {

namespace {

std::shared_ptr<TitleConfigAdapter> createAdapter(ConfigType type) {
    switch (type) {
    case ConfigType::TextFile:
        return std::make_shared<TextConfigAdapter>();
    case ConfigType::Registry:
        break;
    }
    return std::make_shared<RegisterConfigAdapter>();
}

// What the elements of a database mean, up to one that cannot be read.
struct ReadElements {
    std::vector<std::string> unknownTypes; // to be logged
    std::set<std::uint32_t> ids;
    std::map<std::string, std::shared_ptr<TitleConfigAdapter>> titles;
    std::exception_ptr fault; // of the last one, which ends the loading
};

void readElement(const nlohmann::json& json, const UserFolders& userFolders, ReadElements& read) {
    std::string unknownType;
    const std::optional<ConfigType> type = readConfigType(json, unknownType);
    if (!type) {
        if (!unknownType.empty()) {
            read.unknownTypes.push_back(unknownType);
        }
        return;
    }
    const std::shared_ptr<TitleConfigAdapter> title = createAdapter(*type);
    if (const std::optional<std::uint32_t> id = readTitleId(json)) {
        title->id = *id;
        read.ids.insert(*id);
    }
    try {
        readTitle(json, userFolders, *title);
        read.titles[title->binaryName] = title;
    } catch (const nlohmann::json::exception&) {
        read.fault = std::current_exception();
    }
}

} // namespace

TitleManager::TitleManager() : userFolders(findUserFolders()) {}

bool TitleManager::loadTitlesDatabase(const std::string& directory) {
    const std::lock_guard lock(mutex);
    // The library's own buffer has 512 bytes on Windows.
    std::vector<char> buffer(65'536);
    std::ifstream file;
    file.rdbuf()->pubsetbuf(buffer.data(), static_cast<std::streamsize>(buffer.size()));
    file.open(toPath(directory + "\\titles_db.json"));
    if (!file) {
        logLine("Brisk : unable to open title database.");
        return false;
    }
    // Nothing of a malformed database may be seen, so that its elements take effect only when all of it has been read.
    ReadElements read;
    const bool isArray = readJsonElements(file, [&](const nlohmann::json& element) {
        if (!read.fault) {
            readElement(element, userFolders, read);
        }
    });
    if (!isArray) {
        logLine("Brisk : unable to parse title database.");
    }
    for (const std::string& unknownType : read.unknownTypes) {
        logUnknownConfigType(unknownType);
    }
    knownIds = std::move(read.ids);
    titles = std::move(read.titles);
    if (read.fault) {
        std::rethrow_exception(read.fault);
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
    return title && needsToBeOptimized(*title, resolutionValues);
}

bool TitleManager::optimizeTitle(const std::string& binaryName) {
    const std::lock_guard lock(mutex);
    TitleConfigAdapter* title = findTitle(binaryName);
    return title && optimize(*title, resolutionValues);
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
    names.reserve(titles.size());
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

} // namespace brisk
