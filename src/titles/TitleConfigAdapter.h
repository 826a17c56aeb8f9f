#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace brisk {

// One setting to check and set, filed under its key: a regular expression (text files) or a registry value name. A
// field is numeric exactly when `value` is empty.
struct ConfigField {
    std::string meta;        // name of the run-time resolution value that replaces intValue; may be empty
    std::string text;        // the setting in words, for the user
    std::string createKey;   // written instead of the key when the setting is missing; may be empty
    std::string createValue; // template of the value written under createKey
    std::string value;       // the wanted text
    std::int32_t intValue = 0;
};

// A condition on a current setting that must hold before a title is patched.
struct PatchCondition {
    std::string key;
    std::vector<std::string> presenceValues;
    std::vector<std::int32_t> presenceNumbers;
    bool absence = false; // a missing setting is acceptable
};

// One title of the database and the operations on its configuration, which is kept in a text file or in the registry.
// Owned by shared pointers made for the concrete class, hence no virtual destructor.
class TitleConfigAdapter {
public:
    // Locates the configuration among configLocations; appDirectory is the game's folder or empty.
    virtual bool findConfig(const std::string& appDirectory) = 0;
    // Reads the located configuration.
    virtual bool loadConfig() = 0;
    // Writes the configuration back.
    virtual bool saveConfig() = 0;
    // Set or create a setting. False when that is known to have failed.
    virtual bool setValue(const std::string& key, const std::string& text) = 0;
    virtual bool setIntValue(const std::string& key, std::int32_t number) = 0;
    // The current value, or the default when the setting is missing.
    virtual std::int32_t getIntValue(const std::string& key, std::int32_t defaultNumber) = 0;
    virtual std::string getValue(const std::string& key, const std::string& defaultText) = 0;

    std::uint32_t id = 0;
    std::uint32_t lumaVersion = 0; // 0: the title does not support LUMA
    std::string titleName;         // display name
    std::string publisher;
    std::string binaryName; // the executable's file name, under which the title is filed
    std::vector<PatchCondition> patchConditions;
    std::vector<std::string> configLocations;
    std::map<std::string, ConfigField> configFields; // by key

protected:
    TitleConfigAdapter() = default;
    TitleConfigAdapter(const TitleConfigAdapter&) = default;
    TitleConfigAdapter& operator=(const TitleConfigAdapter&) = default;
    ~TitleConfigAdapter() = default;
};

} // namespace brisk
