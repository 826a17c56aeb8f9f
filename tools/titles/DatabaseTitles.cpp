#include "tools/titles/DatabaseTitles.h"

#include <nlohmann/json.hpp>

namespace brisk::workbench {

DatabaseTitles readTitles(const SourceText& database, const UserFolders& userFolders) {
    DatabaseTitles titles;
    const nlohmann::json root = nlohmann::json::parse(database.text());
    for (std::size_t element = 0; root.is_array() && element < root.size(); ++element) {
        if (const std::optional<ConfigType> type = readConfigType(root[element])) {
            DatabaseTitle title{{}, *type, element};
            title.title.id = readTitleId(root[element]).value_or(0);
            readTitle(root[element], userFolders, title.title);
            titles.insert_or_assign(title.title.binaryName, title);
        }
    }
    return titles;
}

} // namespace brisk::workbench
