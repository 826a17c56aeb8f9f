// Settings files as games write them.
#pragma once

#include <string>
#include <vector>

namespace brisk::workbench {

struct SettingsSample {
    const char* name; // of the file
    std::string bytes;
};

const std::vector<SettingsSample>& settingsSamples();

// The bytes of the sample of this name.
const std::string& settingsSample(const std::string& name);

} // namespace brisk::workbench
