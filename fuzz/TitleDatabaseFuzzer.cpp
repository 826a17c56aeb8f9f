#include "fuzz/Fuzzing.h"
#include "host/simulation/Files.h"
#include "titles/TextConfigAdapter.h"
#include "titles/TitleDatabase.h"
#include "titles/TitleManager.h"

#include <cmath>
#include <cstring>
#include <fstream>
#include <map>
#include <set>

#include <nlohmann/json.hpp>

// The title database's bytes: loaded by the title manager, and read a second time from the parsed document.

namespace brisk {
namespace {

using nlohmann::json;

const UserFolders kUserFolders{{"%USERPROFILE%", "C:\\Users\\Player"},
                               {"%LOCALAPPDATA%", "C:\\Users\\Player\\AppData\\Local"},
                               {"%APPDATA%", "C:\\Users\\Player\\AppData\\Roaming"}};

// The whole number modulo 2^32; 0 beyond 64 bits.
std::uint32_t expectedNumber(const json& number) {
    constexpr double kModulus = 4294967296.0;
    if (number.is_number_unsigned()) {
        return static_cast<std::uint32_t>(number.get<json::number_unsigned_t>() % (1ULL << 32));
    }
    if (number.is_number_integer()) {
        const json::number_integer_t value = number.get<json::number_integer_t>();
        return static_cast<std::uint32_t>(static_cast<json::number_unsigned_t>(value) % (1ULL << 32));
    }
    const double value = std::trunc(number.get<double>());
    if (value < -std::ldexp(1.0, 63) || value >= std::ldexp(1.0, 63)) {
        return 0;
    }
    const double rest = std::fmod(value, kModulus);
    return static_cast<std::uint32_t>(rest < 0 ? rest + kModulus : rest);
}

// As a signed number, without relying on what a conversion does.
std::int32_t expectedSignedNumber(const json& number) {
    const std::uint32_t bits = expectedNumber(number);
    std::int32_t value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

// A member of the type asked for; null otherwise.
const json* find(const json& element, const char* name, bool (json::*isType)() const noexcept) {
    if (!element.is_object() || !element.contains(name)) {
        return nullptr;
    }
    const json& member = element.at(name);
    return (member.*isType)() ? &member : nullptr;
}

std::string expectedString(const json& element, const char* name) {
    const json* member = find(element, name, &json::is_string);
    return member ? member->get_ref<const std::string&>() : std::string();
}

std::uint32_t expectedNumberOrZero(const json& element, const char* name) {
    const json* member = find(element, name, &json::is_number);
    return member ? expectedNumber(*member) : 0;
}

json elementsOf(const json& element, const char* name) {
    const json* member = find(element, name, &json::is_array);
    return member ? *member : json::array();
}

std::string expectedLocation(std::string location) {
    for (const auto& [placeholder, folder] : kUserFolders) {
        const std::size_t at = location.find(placeholder);
        if (at != std::string::npos) {
            location = location.substr(0, at) + folder + location.substr(at + placeholder.size());
        }
    }
    return location;
}

void checkConditions(const TitleConfigAdapter& title, const json& element) {
    const json conditions = elementsOf(element, "patch_if");
    fuzzing::requireEqual(title.patchConditions.size(), conditions.size(), "the number of conditions");
    for (std::size_t i = 0; i < conditions.size(); ++i) {
        const PatchCondition& condition = title.patchConditions[i];
        fuzzing::requireEqual(condition.key, expectedString(conditions[i], "key"), "a condition's key");
        const json* absence = find(conditions[i], "absence", &json::is_boolean);
        fuzzing::requireEqual(condition.absence, absence != nullptr && *absence == true, "absence");
        std::vector<std::string> values;
        std::vector<std::int32_t> numbers;
        for (const json& allowed : elementsOf(conditions[i], "presence")) {
            if (allowed.is_string()) {
                values.push_back(allowed);
            }
            if (allowed.is_number()) {
                numbers.push_back(expectedSignedNumber(allowed));
            }
        }
        fuzzing::require(condition.presenceValues == values, "the allowed texts");
        fuzzing::require(condition.presenceNumbers == numbers, "the allowed numbers");
    }
}

void checkFields(const TitleConfigAdapter& title, const json& element) {
    std::map<std::string, json> fields;
    for (const json& field : elementsOf(element, "config_fields")) {
        fields[expectedString(field, "key")] = field;
    }
    fuzzing::requireEqual(title.configFields.size(), fields.size(), "the number of fields");
    for (const auto& [key, expected] : fields) {
        fuzzing::require(title.configFields.contains(key), "a field under its key");
        const ConfigField& field = title.configFields.at(key);
        fuzzing::requireEqual(field.meta, expectedString(expected, "meta"), "meta");
        fuzzing::requireEqual(field.text, expectedString(expected, "text"), "text");
        fuzzing::requireEqual(field.createKey, expectedString(expected, "create_key"), "create_key");
        fuzzing::requireEqual(field.createValue, expectedString(expected, "create_value"), "create_value");
        fuzzing::requireEqual(field.value, expectedString(expected, "value"), "a text value");
        const json* number = find(expected, "value", &json::is_number);
        fuzzing::requireEqual(field.intValue, number ? expectedSignedNumber(*number) : 0, "a number value");
    }
}

void checkTitle(const json& element) {
    TextConfigAdapter title;
    readTitle(element, kUserFolders, title);
    fuzzing::requireEqual(title.lumaVersion, expectedNumberOrZero(element, "luma_version"), "luma_version");
    fuzzing::requireEqual(title.titleName, expectedString(element, "title_name"), "title_name");
    fuzzing::requireEqual(title.publisher, expectedString(element, "publisher"), "publisher");
    fuzzing::requireEqual(title.binaryName, expectedString(element, "binary_name"), "binary_name");
    std::vector<std::string> locations;
    for (const json& location : elementsOf(element, "config_locations")) {
        locations.push_back(expectedLocation(location));
    }
    fuzzing::require(title.configLocations == locations, "config_locations");
    checkConditions(title, element);
    checkFields(title, element);
}

// What the manager must hold, log and answer for a parsed document.
struct Expected {
    std::map<std::string, json> titles; // by binary name
    std::set<std::uint32_t> ids;
    std::string log;
    bool throws = false;
};

Expected readDocument(const json& document) {
    Expected expected;
    if (!document.is_array()) {
        expected.log = "Brisk : unable to parse title database.\n";
        return expected;
    }
    for (const json& element : document) {
        const json* type = find(element, "config_type", &json::is_string);
        if (!type) {
            continue;
        }
        if (*type != "txt" && *type != "reg") {
            expected.log += "Brisk : unknown adaper type '" + type->dump() + "'.\n";
            continue;
        }
        if (const json* id = find(element, "id", &json::is_number)) {
            expected.ids.insert(expectedNumber(*id));
        }
        for (const json& location : elementsOf(element, "config_locations")) {
            expected.throws = expected.throws || !location.is_string();
        }
        if (expected.throws) {
            break;
        }
        expected.titles[expectedString(element, "binary_name")] = element;
    }
    return expected;
}

// The words of the first field, by its key, that has any.
std::string expectedSettingText(const json& element) {
    std::map<std::string, std::string> texts;
    for (const json& field : elementsOf(element, "config_fields")) {
        texts[expectedString(field, "key")] = expectedString(field, "text");
    }
    for (const auto& [key, text] : texts) {
        if (!text.empty()) {
            return text;
        }
    }
    return {};
}

void checkManager(const TitleManager& manager, const Expected& expected) {
    std::vector<std::string> names;
    for (const auto& [name, element] : expected.titles) {
        names.push_back(name);
        const bool isLumaSupported = expectedNumberOrZero(element, "luma_version") != 0;
        fuzzing::requireEqual(manager.getTitleName(name), expectedString(element, "title_name"), "getTitleName");
        fuzzing::requireEqual(manager.isLumaSupported(name), isLumaSupported, "isLumaSupported");
        fuzzing::requireEqual(manager.getSettingText(name), isLumaSupported ? expectedSettingText(element) : "",
                              "getSettingText");
    }
    fuzzing::require(manager.getBinaryNames() == names, "getBinaryNames");
    for (const std::uint32_t id : expected.ids) {
        fuzzing::require(manager.isTitleIdKnown(id), "isTitleIdKnown of a known id");
        fuzzing::requireEqual(manager.isTitleIdKnown(id + 1), expected.ids.contains(id + 1), "isTitleIdKnown");
    }
}

void checkDatabase(const std::string& directory, const std::string& text) {
    std::ofstream(host::onThisMachine(directory + "\\titles_db.json"), std::ios::binary) << text;
    TitleManager manager;
    Expected expected;
    const json document = json::parse(text, nullptr, false);
    if (document.is_discarded()) {
        expected.throws = true;
    } else {
        expected = readDocument(document);
    }

    bool hasThrown = false;
    try {
        fuzzing::requireEqual(manager.loadTitlesDatabase(directory), !expected.titles.empty(), "loadTitlesDatabase");
    } catch (const json::parse_error&) {
        fuzzing::require(document.is_discarded(), "a parse error for malformed JSON only");
        hasThrown = true;
    } catch (const json::out_of_range&) {
        fuzzing::require(document.is_discarded(), "a range error for a number without limits only");
        hasThrown = true;
    } catch (const json::type_error& error) {
        fuzzing::requireEqual(error.id, 302, "the type error of a location that is no string");
        hasThrown = true;
    }
    fuzzing::requireEqual(hasThrown, expected.throws, "an exception");
    fuzzing::requireLog(expected.log);
    checkManager(manager, expected);
    for (const auto& [name, element] : expected.titles) {
        checkTitle(element);
    }
}

} // namespace
} // namespace brisk

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string directory = [] {
        const std::string path = "C:\\Program Files\\Brisk";
        std::filesystem::create_directories(brisk::host::onThisMachine(path));
        return path;
    }();
    brisk::checkDatabase(directory, std::string(brisk::fuzzing::toText(data, size)));
    return 0;
}
