#include "tools/titles/TitleParts.h"

namespace brisk::workbench {

namespace {

const JsonValue* findIf(const JsonValue& object, const char* key, bool (JsonValue::*hasType)() const) {
    const JsonValue::Member* member = object.find(key);
    return member && (member->value.*hasType)() ? &member->value : nullptr;
}

std::vector<const JsonValue*> findObjects(const JsonValue& title, const char* key) {
    std::vector<const JsonValue*> objects;
    if (const JsonValue* array = findArray(title, key)) {
        for (const JsonValue& item : array->items) {
            if (item.isObject()) {
                objects.push_back(&item);
            }
        }
    }
    return objects;
}

} // namespace

const JsonValue* findArray(const JsonValue& object, const char* key) {
    return findIf(object, key, &JsonValue::isArray);
}

const JsonValue* findText(const JsonValue& object, const char* key) {
    return findIf(object, key, &JsonValue::isString);
}

const JsonValue* findNumber(const JsonValue& object, const char* key) {
    return findIf(object, key, &JsonValue::isNumber);
}

bool isRegistryTitle(const JsonValue& title) {
    const JsonValue* type = findText(title, "config_type");
    return type && type->text() == "reg";
}

bool isLumaTitle(const JsonValue& title) {
    const JsonValue* version = findNumber(title, "luma_version");
    return version && version->scalar != 0;
}

std::vector<const JsonValue*> findFields(const JsonValue& title) {
    return findObjects(title, "config_fields");
}

std::vector<const JsonValue*> findConditions(const JsonValue& title) {
    return findObjects(title, "patch_if");
}

} // namespace brisk::workbench
