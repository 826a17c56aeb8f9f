#include "titles/TextConfigAdapter.h"

#include "base/TextEncoding.h"
#include "titles/ConfigFiles.h"
#include "titles/ConfigLocation.h"
#include "titles/TextSettings.h"

#include <fstream>

namespace brisk {

namespace {

// Opens the first of the locations that can be opened; the stream is closed when there is none.
template <class Stream>
Stream openFirst(const std::vector<std::string>& locations) {
    for (const std::string& location : locations) {
        // The runtime opens streams without denying others access.
        if (Stream stream(toPath(location)); stream.is_open()) {
            return stream;
        }
    }
    return {};
}

} // namespace

bool TextConfigAdapter::findConfig(const std::string& appDirectory) {
    return findFirstLocation(configLocations, appDirectory, {resolveWildcard, locationExists});
}

bool TextConfigAdapter::loadConfig() {
    auto file = openFirst<std::ifstream>(configLocations);
    if (!file.is_open()) {
        return false;
    }
    file.seekg(0, std::ios::end);
    const std::streamoff length = file.tellg();
    file.seekg(0, std::ios::beg);
    std::string text;
    text.reserve(length > 0 ? static_cast<std::size_t>(length) : 0);
    char block[4096];
    while (file.read(block, sizeof block), file.gcount() > 0) {
        text.append(block, static_cast<std::size_t>(file.gcount()));
    }
    // Swapped, not moved: a short text would be copied into the old one's buffer, which may be large.
    content.swap(text);
    return true;
}

bool TextConfigAdapter::saveConfig() {
    auto file = openFirst<std::ofstream>(configLocations);
    if (!file.is_open()) {
        return false;
    }
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    content.clear();
    content.shrink_to_fit(); // the next text may never come
    return true;
}

bool TextConfigAdapter::setValue(const std::string& key, const std::string& text) {
    setTextValue(content, key, text);
    return true;
}

bool TextConfigAdapter::setIntValue(const std::string& key, std::int32_t number) {
    return setValue(key, std::to_string(number));
}

std::int32_t TextConfigAdapter::getIntValue(const std::string& key, std::int32_t defaultNumber) {
    return getTextNumber(content, key, defaultNumber);
}

std::string TextConfigAdapter::getValue(const std::string& key, const std::string& defaultText) {
    return getTextValue(content, key, defaultText);
}

} // namespace brisk
