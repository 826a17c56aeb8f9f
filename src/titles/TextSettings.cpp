#include "titles/TextSettings.h"

#include "base/StandardErrors.h"
#include "pattern/SettingPattern.h"

namespace brisk {

std::string getTextValue(const std::string& content, const std::string& key, const std::string& defaultText) {
    const char* const upToNul = content.c_str();
    const auto match = SettingPattern(key).search(upToNul);
    if (!match) {
        return defaultText;
    }
    return match->size() > 2 ? std::string((*match)[2]) : std::string();
}

std::int32_t getTextNumber(const std::string& content, const std::string& key, std::int32_t defaultNumber) {
    return stringToInt(getTextValue(content, key, std::to_string(defaultNumber)));
}

void setTextValue(std::string& content, const std::string& key, const std::string& text) {
    // No key has a group 99: it expands to nothing and keeps a value that begins with a digit apart from "$1".
    content = SettingPattern(key).replace(content, "$1$99" + text + "$3");
}

} // namespace brisk
