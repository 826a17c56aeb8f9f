#pragma once

#include "titles/TitleConfigAdapter.h"

namespace brisk {

// A title that keeps its settings in a text file; TextSettings.h says what keys are and what reading and writing them
// throws.
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
    // True even when nothing matched.
    bool setValue(const std::string& key, const std::string& text) override;
    bool setIntValue(const std::string& key, std::int32_t number) override;
    std::int32_t getIntValue(const std::string& key, std::int32_t defaultNumber) override;
    std::string getValue(const std::string& key, const std::string& defaultText) override;

    std::string content; // the whole file between loadConfig and saveConfig
};

} // namespace brisk
