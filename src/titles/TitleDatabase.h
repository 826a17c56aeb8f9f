#pragma once

#include "titles/ConfigLocation.h"
#include "titles/TitleConfigAdapter.h"

#include <cstdint>
#include <memory>
#include <optional>

#include <nlohmann/json_fwd.hpp>

namespace brisk {

// Reading one element of the title database. Members that are absent or of another type are ignored.

// A title of the element's "config_type", with nothing read yet. Null when the element is to be skipped: silently
// without a type, with a log line for an unknown one.
std::shared_ptr<TitleConfigAdapter> createTitle(const nlohmann::json& element);

// The element's "id"; nothing when it is no number.
std::optional<std::uint32_t> readTitleId(const nlohmann::json& element);

// Reads everything but the id. Throws nlohmann::json::type_error for a configuration location that is no string.
void readTitle(const nlohmann::json& element, const UserFolders& userFolders, TitleConfigAdapter& title);

} // namespace brisk
