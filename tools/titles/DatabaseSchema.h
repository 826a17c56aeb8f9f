#pragma once

#include <string_view>

namespace brisk::workbench {

// docs/titles_db.schema.json, which is built in.
std::string_view databaseSchema();

} // namespace brisk::workbench
