#pragma once

#include <string>

#include <nlohmann/json.hpp>

namespace brisk::workbench {

// A JSON value as people write title databases: what fits stands on one line, several objects of an array on one each.
// The first line is not indented; no line end behind the last one. Bytes that are no UTF-8 become U+FFFD.
std::string layOut(const nlohmann::ordered_json& value, std::size_t indent = 0);

// The same for a title, whose members stand on a line each however short it is.
std::string layOutTitle(const nlohmann::ordered_json& title, std::size_t indent = 0);

} // namespace brisk::workbench
