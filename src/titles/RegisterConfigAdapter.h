#pragma once

#include "titles/TitleConfigAdapter.h"

#include <windows.h>

namespace brisk {

// A title that keeps its settings as values of one registry key. Values are read and written at once: there is nothing
// to load or save. A setting's key is the value's name.
class RegisterConfigAdapter final : public TitleConfigAdapter {
public:
    // Opens the key named by the first location, "<root>/<path>"; appDirectory is not used.
    bool findConfig(const std::string& appDirectory) override;
    // True when the key was found.
    bool loadConfig() override;
    bool saveConfig() override;
    bool setValue(const std::string& name, const std::string& text) override;
    bool setIntValue(const std::string& name, std::int32_t number) override;
    // The value's bytes as a number, whatever its registry type; the default for data longer than four bytes.
    std::int32_t getIntValue(const std::string& name, std::int32_t defaultNumber) override;
    // The value's bytes up to the first zero, whatever its registry type.
    std::string getValue(const std::string& name, const std::string& defaultText) override;

    // Null until found. Never closed, nor when the key is found anew (docs/decisions/what-is-kept.md).
    HKEY key = nullptr;
};

} // namespace brisk
