#pragma once

#include "titles/TitleConfigAdapter.h"

namespace brisk {

// A title that keeps its settings in a text file, of whatever format. A setting's key is an ECMAScript regular
// expression of three groups: the text before the value, the value, the text after it. An invalid expression leaves
// every operation on a setting as std::regex_error.
class TextConfigAdapter final : public TitleConfigAdapter {
public:
    // True when a location names an existing file or directory. Expands "%APPDIR%" and the first "*" of the locations
    // in place, for good. Throws std::filesystem::filesystem_error when the file system fails otherwise than by
    // absence.
    bool findConfig(const std::string& appDirectory) override;
    // Reads the first location that opens, in text mode.
    bool loadConfig() override;
    // Writes to the first location that opens (a missing file is created) and empties `content`, in text mode.
    bool saveConfig() override;
    // Replaces the value of every match; true even when nothing matched. The text is subject to the rules of
    // std::regex_replace's format.
    bool setValue(const std::string& key, const std::string& text) override;
    bool setIntValue(const std::string& key, std::int32_t number) override;
    // Throws std::invalid_argument or std::out_of_range when the value is no 32-bit number.
    std::int32_t getIntValue(const std::string& key, std::int32_t defaultNumber) override;
    // Group 2 of the first match before the first NUL; empty when the expression has no such group.
    std::string getValue(const std::string& key, const std::string& defaultText) override;

    std::string content; // the whole file between loadConfig and saveConfig
};

} // namespace brisk
