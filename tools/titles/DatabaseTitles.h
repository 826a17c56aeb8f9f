#pragma once

#include "titles/ConfigLocation.h"
#include "titles/TitleConfigAdapter.h"
#include "titles/TitleDatabase.h"
#include "tools/titles/Finding.h"
#include "tools/titles/SourceText.h"

#include <cstddef>
#include <map>
#include <string>

namespace brisk::workbench {

// A title as it stands in the database, without settings.
class TitleRecord final : public TitleConfigAdapter {
public:
    bool findConfig(const std::string&) override { return false; }
    bool loadConfig() override { return false; }
    bool saveConfig() override { return false; }
    bool setValue(const std::string&, const std::string&) override { return false; }
    bool setIntValue(const std::string&, std::int32_t) override { return false; }
    std::int32_t getIntValue(const std::string&, std::int32_t missing) override { return missing; }
    std::string getValue(const std::string&, const std::string& missing) override { return missing; }
};

struct DatabaseTitle {
    TitleRecord title;
    ConfigType type;
    std::size_t element; // of the database's array
};

// By binary name, as the service files them.
using DatabaseTitles = std::map<std::string, DatabaseTitle>;

// Reads the titles as the service does. Throws nlohmann::json::exception where the service ends.
DatabaseTitles readTitles(const SourceText& database, const UserFolders& userFolders);

} // namespace brisk::workbench
