#pragma once

#include "tools/titles/PreviewAdapter.h"
#include "tools/titles/RegistryExport.h"

#include <string>

namespace brisk::workbench {

// A registry title whose key is kept in memory: reads and writes what the service would.
class RegistryPreviewAdapter final : public PreviewAdapter {
public:
    explicit RegistryPreviewAdapter(const TitleConfigAdapter& title) : PreviewAdapter(title) {}

    // The key is copied from `registry`, which may be null.
    bool findConfig(const std::string& appDirectory) override;
    bool loadConfig() override { return true; }
    bool saveConfig() override { return true; }
    bool setValue(const std::string& name, const std::string& text) override;
    bool setIntValue(const std::string& name, std::int32_t number) override;
    std::int32_t getIntValue(const std::string& name, std::int32_t defaultNumber) override;
    std::string getValue(const std::string& name, const std::string& defaultText) override;
    KeyMatches findMatches(const std::string& name) const override;
    std::string snapshot() const override;

    const RegistryKeys* registry = nullptr; // not owned
    RegistryKey values;
};

} // namespace brisk::workbench
