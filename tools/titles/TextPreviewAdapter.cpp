#include "tools/titles/TextPreviewAdapter.h"

#include "titles/TextSettings.h"
#include "tools/titles/TextMode.h"

#include "pattern/SettingPattern.h"

#include <algorithm>

namespace brisk::workbench {

namespace {

constexpr std::size_t kPlaces = 100; // of one key

const PreviewFile* findFirst(const std::vector<PreviewFile>& files, bool PreviewFile::* property) {
    const auto found =
        std::find_if(files.begin(), files.end(), [property](const PreviewFile& file) { return file.*property; });
    return found == files.end() ? nullptr : &*found;
}

} // namespace

bool TextPreviewAdapter::findConfig(const std::string& appDirectory) {
    if (!source.open || !findFirstLocation(configLocations, appDirectory, source.lookup)) {
        return false;
    }
    openFiles();
    hasFiles = true;
    return true;
}

void TextPreviewAdapter::openFiles() {
    files.clear();
    for (const std::string& location : configLocations) {
        files.push_back(source.open(location));
    }
}

bool TextPreviewAdapter::loadConfig() {
    if (!hasFiles) {
        return true;
    }
    const PreviewFile* file = fileToRead();
    if (!file) {
        return false;
    }
    content = readAsText(file->bytes);
    return true;
}

bool TextPreviewAdapter::saveConfig() {
    if (!hasFiles) {
        return true;
    }
    const auto file = std::find_if(files.begin(), files.end(), [](const PreviewFile& each) { return each.isWritable; });
    if (file == files.end()) {
        return false;
    }
    file->bytes = writeAsText(content);
    file->isReadable = true;
    content.clear();
    return true;
}

bool TextPreviewAdapter::write(const std::string& key, const std::string& text, bool isNumber) {
    writes.push_back({key, text, isNumber});
    setTextValue(content, key, text);
    return true;
}

bool TextPreviewAdapter::setValue(const std::string& key, const std::string& text) {
    return write(key, text, false);
}

bool TextPreviewAdapter::setIntValue(const std::string& key, std::int32_t number) {
    return write(key, std::to_string(number), true);
}

std::int32_t TextPreviewAdapter::getIntValue(const std::string& key, std::int32_t defaultNumber) {
    return getTextNumber(content, key, defaultNumber);
}

std::string TextPreviewAdapter::getValue(const std::string& key, const std::string& defaultText) {
    return getTextValue(content, key, defaultText);
}

KeyMatches TextPreviewAdapter::findMatches(const std::string& key) const {
    KeyMatches matches;
    SettingPattern(key).forEachMatch(content, [&](const SettingPattern::Match& match) {
        if (++matches.count <= kPlaces) {
            // A group that took no part stands nowhere: then it is the match's end.
            const std::string_view whole = match.front();
            const std::string_view value = match.size() > 2 && match[2].data() ? match[2] : whole.substr(whole.size());
            const std::size_t begin = static_cast<std::size_t>(value.data() - content.data());
            matches.places.push_back({begin, begin + value.size()});
        }
        return true;
    });
    return matches;
}

std::string TextPreviewAdapter::snapshot() const {
    if (!hasFiles) {
        return content;
    }
    const PreviewFile* file = fileToRead();
    return file ? file->bytes : std::string();
}

const PreviewFile* TextPreviewAdapter::fileToRead() const {
    return findFirst(files, &PreviewFile::isReadable);
}

const PreviewFile* TextPreviewAdapter::fileToWrite() const {
    return findFirst(files, &PreviewFile::isWritable);
}

} // namespace brisk::workbench
