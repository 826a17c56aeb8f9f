#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

namespace brisk::workbench {

// One thing that is different for players. A value that was not there, or is not any more, is null.
struct TitleChange {
    // "id", "title_name", "publisher", "config_type", "luma_version", "config_locations", "patch_if", or of a setting
    // "field", "key", "value", "meta", "text", "create_key", "create_value".
    std::string what;
    std::string key; // of the setting; empty otherwise
    nlohmann::ordered_json before;
    nlohmann::ordered_json after;
};

struct TitleDifference {
    enum class Kind { Added, Removed, Renamed, Changed };

    Kind kind;
    std::string binaryName;
    std::string earlierName; // of a renamed one
    std::string titleName;
    std::vector<TitleChange> changes; // of a renamed or changed one
};

// What changes from one database to the next, by binary names. Titles that the service skips count as missing, of
// two with the same binary name the later one counts, and a member that is not there has the service's default. Throws
// nlohmann::json::parse_error.
std::vector<TitleDifference> compareDatabases(std::string_view before, std::string_view after);

const char* nameOf(TitleDifference::Kind kind);

} // namespace brisk::workbench
