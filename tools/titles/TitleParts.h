#pragma once

#include "tools/titles/JsonReader.h"

#include <string>
#include <vector>

namespace brisk::workbench {

// The parts of a title that several rules look at; what has the wrong type counts as missing, as it does for the
// service.

const JsonValue* findArray(const JsonValue& object, const char* key);
const JsonValue* findText(const JsonValue& object, const char* key);
const JsonValue* findNumber(const JsonValue& object, const char* key);

bool isRegistryTitle(const JsonValue& title);
bool isLumaTitle(const JsonValue& title);

// The objects among the members of "config_fields" and "patch_if".
std::vector<const JsonValue*> findFields(const JsonValue& title);
std::vector<const JsonValue*> findConditions(const JsonValue& title);

} // namespace brisk::workbench
