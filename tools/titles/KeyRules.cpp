#include "tools/titles/KeyRules.h"

#include "tools/titles/Suggestion.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <set>

namespace brisk::workbench {

namespace {

using Type = nlohmann::json::value_t;

enum class Kind { Text, Number, TextOrNumber, Boolean, Texts, Objects, TextsAndNumbers };

struct KnownKey {
    std::string_view name;
    Kind kind;
    // What the service makes of a value of another type.
    const char* otherwise;
};

constexpr KnownKey kTitleKeys[] = {
    {"config_type", Kind::Text, "the whole title is skipped in silence"},
    {"id", Kind::Number, "the title has no id, so the host cannot announce the game"},
    {"luma_version", Kind::Number, "the title counts as one without LUMA"},
    {"title_name", Kind::Text, "the player sees no name"},
    {"publisher", Kind::Text, "only a game without a company name matches"},
    {"binary_name", Kind::Text, "no running game matches"},
    {"config_locations", Kind::Texts, "the title is never found"},
    {"config_fields", Kind::Objects, "there is nothing to adjust"},
    {"patch_if", Kind::Objects, "the title is adjusted without any condition"},
};

constexpr KnownKey kFieldKeys[] = {
    {"key", Kind::Text, "the setting is looked for under an empty key"},
    {"meta", Kind::Text, "no resolution takes the place of the value"},
    {"text", Kind::Text, "the player sees no words for the setting"},
    {"value", Kind::TextOrNumber, "the wanted value is the number 0"},
    {"create_key", Kind::Text, "a missing setting is not created"},
    {"create_value", Kind::Text, "an empty text is created"},
};

constexpr KnownKey kConditionKeys[] = {
    {"key", Kind::Text, "the setting is looked for under an empty key"},
    {"presence", Kind::TextsAndNumbers, "the condition checks nothing"},
    {"absence", Kind::Boolean, "it counts as false: a missing setting forbids the adjustment"},
};

const char* nameOf(Kind kind) {
    switch (kind) {
    case Kind::Text:
        return "a text";
    case Kind::Number:
        return "a number";
    case Kind::TextOrNumber:
        return "a text or a number";
    case Kind::Boolean:
        return "true or false";
    case Kind::Texts:
        return "an array of texts";
    case Kind::Objects:
        return "an array of objects";
    case Kind::TextsAndNumbers:
        break;
    }
    return "an array of texts or numbers";
}

std::string nameOf(const JsonValue& value) {
    switch (value.type) {
    case Type::string:
        return "a text";
    case Type::boolean:
        return "a boolean";
    case Type::null:
        return "null";
    case Type::object:
        return "an object";
    case Type::array:
        return "an array";
    default:
        return "a number";
    }
}

bool fits(Kind kind, const JsonValue& value) {
    switch (kind) {
    case Kind::Text:
        return value.isString();
    case Kind::Number:
        return value.isNumber();
    case Kind::TextOrNumber:
        return value.isString() || value.isNumber();
    case Kind::Boolean:
        return value.type == Type::boolean;
    default:
        return value.isArray();
    }
}

template <std::size_t Size>
void checkMembers(const JsonValue& object, const KnownKey (&known)[Size], const char* where, Report& report) {
    std::array<std::string_view, Size> names;
    for (std::size_t index = 0; index < Size; ++index) {
        names[index] = known[index].name;
    }
    std::set<std::string_view> seen;
    for (const JsonValue::Member& member : object.members) {
        const KnownKey* key = nullptr;
        for (const KnownKey& candidate : known) {
            if (candidate.name == member.key) {
                key = &candidate;
            }
        }
        if (!key) {
            report.addAtKey(Severity::Error, "unknown-key", member,
                            "\"" + member.key + "\" is no key of " + where + ", and the service ignores it" +
                                didYouMean(member.key, names));
            continue;
        }
        if (!seen.insert(member.key).second) {
            report.addAtKey(Severity::Error, "repeated-key", member,
                            "\"" + member.key + "\" stands here a second time; only the last one counts");
        }
        if (!fits(key->kind, member.value)) {
            report.add(Severity::Error, "wrong-type", member.value,
                       "\"" + member.key + "\" is " + nameOf(member.value) + " but should be " + nameOf(key->kind) +
                           ": " + key->otherwise);
        }
    }
}

// Numbers are read as 32 bits: unsigned, or signed for a setting's value.
void checkNumber(const JsonValue& value, bool isSigned, Report& report) {
    if (!value.isNumber()) {
        return;
    }
    const double number = value.scalar.get<double>();
    if (number != std::trunc(number)) {
        report.add(Severity::Error, "number-fraction", value, "the service cuts off the fraction of a number");
        return;
    }
    const double lowest = isSigned ? std::numeric_limits<std::int32_t>::min() : 0;
    const double highest =
        isSigned ? std::numeric_limits<std::int32_t>::max() : std::numeric_limits<std::uint32_t>::max();
    if (number < lowest || number > highest) {
        const bool isFloat = value.type == Type::number_float;
        report.add(Severity::Error, "number-range", value,
                   std::string(isFloat
                                   ? "what the service makes of so large a number is undefined; this one must lie "
                                     "between "
                                   : "the service keeps only the low 32 bits of a number; this one must lie between ") +
                       (isSigned ? "-2147483648 and 2147483647" : "0 and 4294967295"));
    }
}

void checkItems(const JsonValue& object, const char* key, bool (*isRight)(const JsonValue&), Severity severity,
                const char* message, Report& report) {
    const JsonValue::Member* member = object.find(key);
    if (!member || !member->value.isArray()) {
        return;
    }
    for (const JsonValue& item : member->value.items) {
        if (!isRight(item)) {
            report.add(severity, "wrong-type", item, message);
        }
    }
}

const JsonValue* findValue(const JsonValue& object, const char* key) {
    const JsonValue::Member* member = object.find(key);
    return member ? &member->value : nullptr;
}

// The element's own place would be the whole title: a missing key is shown at its opening bracket.
void reportMissing(const JsonValue& object, Severity severity, const std::string& message, Report& report) {
    report.add(severity, "missing-key", object.begin, object.begin + 1, message);
}

void checkField(const JsonValue& field, Report& report) {
    checkMembers(field, kFieldKeys, "a setting", report);
    if (const JsonValue* value = findValue(field, "value")) {
        checkNumber(*value, true, report);
    }
    if (!field.find("key")) {
        reportMissing(field, Severity::Error, "without a \"key\" nothing says which setting this is", report);
    }
    if (!field.find("value") && !field.find("meta")) {
        reportMissing(field, Severity::Error, "without a \"value\" or a \"meta\" the setting is set to 0", report);
    }
    if (field.find("create_key") && !field.find("create_value")) {
        reportMissing(
            field, Severity::Error,
            "\"create_key\" without a \"create_value\" creates an empty text; write \"create_value\": \"...*\"",
            report);
    }
    if (field.find("create_value") && !field.find("create_key")) {
        reportMissing(field, Severity::Error, "\"create_value\" has no effect without a \"create_key\"", report);
    }
}

void checkCondition(const JsonValue& condition, Report& report) {
    checkMembers(condition, kConditionKeys, "a condition", report);
    if (const JsonValue* presence = findValue(condition, "presence"); presence && presence->isArray()) {
        for (const JsonValue& allowed : presence->items) {
            checkNumber(allowed, true, report);
        }
    }
    checkItems(
        condition, "presence", [](const JsonValue& item) { return item.isString() || item.isNumber(); },
        Severity::Error, "an allowed value is a text or a number; the service ignores this one", report);
    if (!condition.find("key")) {
        reportMissing(condition, Severity::Error, "without a \"key\" nothing says which setting the condition is about",
                      report);
    }
    if (!condition.find("presence")) {
        reportMissing(condition, Severity::Error, "without \"presence\" the condition checks nothing", report);
    }
}

bool isObject(const JsonValue& item) {
    return item.isObject();
}

} // namespace

void checkKeys(const JsonValue& title, Report& report) {
    checkMembers(title, kTitleKeys, "a title", report);
    for (const char* key : {"id", "luma_version"}) {
        if (const JsonValue* number = findValue(title, key)) {
            checkNumber(*number, false, report);
        }
    }
    checkItems(
        title, "config_locations", [](const JsonValue& item) { return item.isString(); }, Severity::Error,
        "a location must be a text: the service ends at its start with \"type must be string\"", report);
    checkItems(title, "config_fields", isObject, Severity::Error,
               "a setting is an object; the service takes this one for a setting without a key", report);
    checkItems(title, "patch_if", isObject, Severity::Error,
               "a condition is an object; the service takes this one for a condition that checks nothing", report);
    struct Missing {
        const char* key;
        Severity severity;
        const char* message;
    };
    static constexpr Missing kMissing[] = {
        {"config_type", Severity::Error, "without a \"config_type\" the service skips the title in silence"},
        {"id", Severity::Error, "without an \"id\" the host cannot announce the game, and it is never offered"},
        {"binary_name", Severity::Error, "without a \"binary_name\" no running game matches the title"},
        {"publisher", Severity::Warning, "without a \"publisher\" only an executable without a company name matches"},
        {"title_name", Severity::Error, "without a \"title_name\" the player sees no name"},
        {"config_locations", Severity::Error, "without \"config_locations\" the title is never found"},
        {"config_fields", Severity::Error, "without \"config_fields\" there is nothing to adjust"},
    };
    for (const Missing& missing : kMissing) {
        if (!title.find(missing.key)) {
            reportMissing(title, missing.severity, missing.message, report);
        }
    }
    for (const char* key : {"config_locations", "config_fields"}) {
        if (const JsonValue* array = findValue(title, key); array && array->isArray() && array->items.empty()) {
            report.add(Severity::Error, "missing-key", *array,
                       std::string("\"") + key + "\" is empty: the title cannot work");
        }
    }
    for (const char* key : {"binary_name", "title_name"}) {
        if (const JsonValue* text = findValue(title, key); text && text->isString() && text->text().empty()) {
            report.add(Severity::Error, "missing-key", *text, std::string("\"") + key + "\" is empty");
        }
    }
    if (const JsonValue* fields = findValue(title, "config_fields"); fields && fields->isArray()) {
        for (const JsonValue& field : fields->items) {
            if (field.isObject()) {
                checkField(field, report);
            }
        }
    }
    if (const JsonValue* conditions = findValue(title, "patch_if"); conditions && conditions->isArray()) {
        for (const JsonValue& condition : conditions->items) {
            if (condition.isObject()) {
                checkCondition(condition, report);
            }
        }
    }
}

} // namespace brisk::workbench
