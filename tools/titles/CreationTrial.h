#pragma once

#include "tools/titles/JsonReader.h"

#include "pattern/PatternTree.h"

#include <optional>
#include <string>

namespace brisk::workbench {

// Creates the field's setting in a small text that its "create_key" matches, with the service's own functions, and
// looks for it with the field's "key". Nothing when it is found with the wanted value, or when no such text could be
// made up; otherwise what is found there instead, in words. The tree is that of the "create_key".
std::optional<std::string> tryCreation(const JsonValue& field, const PatternTree& createKey);

} // namespace brisk::workbench
