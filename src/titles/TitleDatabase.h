#pragma once

#include "titles/ConfigLocation.h"
#include "titles/TitleConfigAdapter.h"

#include <cstdint>
#include <optional>
#include <string>

#include <nlohmann/json_fwd.hpp>

namespace brisk {

// Reading one element of the title database. Members that are absent or of another type are ignored.

// Where a title keeps its settings.
enum class ConfigType { TextFile, Registry };

// The element's "config_type". Nothing when the element is to be skipped: silently without a type, with a log line for
// an unknown one.
std::optional<ConfigType> readConfigType(const nlohmann::json& element);

// The same without the line: the type's JSON text where it is unknown goes into `unknown`, and is empty otherwise.
std::optional<ConfigType> readConfigType(const nlohmann::json& element, std::string& unknown);
void logUnknownConfigType(const std::string& unknown);

// The element's "id"; nothing when it is no number.
std::optional<std::uint32_t> readTitleId(const nlohmann::json& element);

// Reads everything but the id. Throws nlohmann::json::type_error for a configuration location that is no string.
void readTitle(const nlohmann::json& element, const UserFolders& userFolders, TitleConfigAdapter& title);

} // namespace brisk
