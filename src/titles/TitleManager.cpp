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

// What an element of the database means for the titles.
struct ReadElement {
    std::string unknownType; // to be logged
    std::optional<std::uint32_t> id;
    std::exception_ptr fault; // which ends the loading
    std::shared_ptr<TitleConfigAdapter> title;
};

void readElement(const nlohmann::json& json, const UserFolders& userFolders, std::vector<ReadElement>& elements) {
    ReadElement element;
    const std::optional<ConfigType> type = readConfigType(json, element.unknownType);
    if (type) {
        const std::shared_ptr<TitleConfigAdapter> title = createAdapter(*type);
        element.id = readTitleId(json);
        title->id = element.id.value_or(0);
        try {
            readTitle(json, userFolders, *title);
            element.title = title;
        } catch (const nlohmann::json::exception&) {
            element.fault = std::current_exception();
        }
    }
    if (type || !element.unknownType.empty()) {
        elements.push_back(std::move(element));
    }
}

} // namespace

TitleManager::TitleManager() : userFolders(findUserFolders()) {}

bool TitleManager::loadTitlesDatabase(const std::string& directory) {
    const std::lock_guard lock(mutex);
    std::ifstream file(toPath(directory + "\\titles_db.json"));
    if (!file) {
        logLine("Brisk : unable to open title database.");
        return false;
    }
    // Nothing of a malformed database may be seen, so that its elements take effect only when all of it has been read.
    std::vector<ReadElement> elements;
    const bool isArray = readJsonElements(file, [&](const nlohmann::json& element) {
        if (elements.empty() || !elements.back().fault) {
            readElement(element, userFolders, elements);
        }
    });
    if (!isArray) {
        logLine("Brisk : unable to parse title database.");
    }
    for (const ReadElement& element : elements) {
        if (!element.unknownType.empty()) {
            logUnknownConfigType(element.unknownType);
        }
        if (element.id) {
            knownIds.insert(*element.id);
        }
        if (element.fault) {
            std::rethrow_exception(element.fault);
        }
        if (element.title) {
            titles[element.title->binaryName] = element.title;
        }
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
