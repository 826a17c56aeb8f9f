#include "titles/TitleDatabase.h"

#include "base/Log.h"

#include <utility>

#include <nlohmann/json.hpp>

namespace brisk {

namespace {

using nlohmann::json;

// The member of an object; null when there is none or the element is no object.
const json* findMember(const json& element, const char* name) {
    const auto member = element.find(name);
    return member == element.end() ? nullptr : &*member;
}

// The low 32 bits of a number; fractions are cut off. A floating-point number beyond a signed 64-bit one counts as 0.
std::uint32_t toUint32(const json& number) {
    if (!number.is_number_float()) {
        return static_cast<std::uint32_t>(number.get<std::uint64_t>());
    }
    constexpr double kLimit = 9223372036854775808.0; // 2^63
    const double value = number.get<double>();
    return value >= -kLimit && value < kLimit ? static_cast<std::uint32_t>(static_cast<std::int64_t>(value)) : 0;
}

std::int32_t toInt32(const json& number) {
    return static_cast<std::int32_t>(toUint32(number));
}

void readString(const json& element, const char* name, std::string& text) {
    if (const json* member = findMember(element, name); member && member->is_string()) {
        text = member->get<std::string>();
    }
}

template <class Read>
void readArray(const json& element, const char* name, const Read& readItem) {
    if (const json* member = findMember(element, name); member && member->is_array()) {
        for (const json& item : *member) {
            readItem(item);
        }
    }
}

PatchCondition readCondition(const json& element) {
    PatchCondition condition;
    readString(element, "key", condition.key);
    if (const json* absence = findMember(element, "absence"); absence && absence->is_boolean()) {
        condition.absence = absence->get<bool>();
    }
    readArray(element, "presence", [&condition](const json& allowed) {
        if (allowed.is_string()) {
            condition.presenceValues.push_back(allowed.get<std::string>());
        } else if (allowed.is_number()) {
            condition.presenceNumbers.push_back(toInt32(allowed));
        }
    });
    return condition;
}

ConfigField readField(const json& element) {
    ConfigField field;
    readString(element, "meta", field.meta);
    readString(element, "text", field.text);
    readString(element, "value", field.value);
    if (const json* value = findMember(element, "value"); value && value->is_number()) {
        field.intValue = toInt32(*value);
    }
    readString(element, "create_key", field.createKey);
    readString(element, "create_value", field.createValue);
    return field;
}

} // namespace

std::optional<ConfigType> readConfigType(const json& element) {
    std::string unknown;
    const std::optional<ConfigType> type = readConfigType(element, unknown);
    if (!unknown.empty()) {
        logUnknownConfigType(unknown);
    }
    return type;
}

std::optional<ConfigType> readConfigType(const json& element, std::string& unknown) {
    unknown.clear();
    const json* type = findMember(element, "config_type");
    if (!type || !type->is_string()) {
        return std::nullopt;
    }
    if (*type == "txt") {
        return ConfigType::TextFile;
    }
    if (*type == "reg") {
        return ConfigType::Registry;
    }
    unknown = type->dump();
    return std::nullopt;
}

void logUnknownConfigType(const std::string& unknown) {
    // Misspelt for good (docs/decisions/kept-behaviour.md).
    logLine("Brisk : unknown adaper type '", unknown, "'.");
}

std::optional<std::uint32_t> readTitleId(const json& element) {
    const json* id = findMember(element, "id");
    return id && id->is_number() ? std::optional(toUint32(*id)) : std::nullopt;
}

void readTitle(const json& element, const UserFolders& userFolders, TitleConfigAdapter& title) {
    if (const json* version = findMember(element, "luma_version"); version && version->is_number()) {
        title.lumaVersion = toUint32(*version);
    }
    readString(element, "title_name", title.titleName);
    readString(element, "publisher", title.publisher);
    readString(element, "binary_name", title.binaryName);
    readArray(element, "config_locations", [&](const json& location) {
        std::string& kept = title.configLocations.emplace_back(location.get<std::string>());
        expandUserFolders(kept, userFolders);
        kept.shrink_to_fit(); // a longer text has room for twice as much
    });
    readArray(element, "patch_if",
              [&](const json& condition) { title.patchConditions.push_back(readCondition(condition)); });
    readArray(element, "config_fields", [&](const json& item) {
        std::string key;
        readString(item, "key", key);
        title.configFields.insert_or_assign(std::move(key), readField(item));
    });
}

} // namespace brisk
