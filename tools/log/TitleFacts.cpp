#include "tools/log/TitleFacts.h"

#include "tools/titles/JsonReader.h"
#include "tools/titles/SourceText.h"
#include "tools/titles/TitleParts.h"

#include <algorithm>
#include <utility>

namespace brisk::logbook {

namespace {

using workbench::JsonValue;

std::string textOf(const JsonValue& object, const char* key) {
    const JsonValue* text = workbench::findText(object, key);
    return text ? text->text() : std::string();
}

// The low 32 bits, as the service takes them.
std::uint32_t toNumber(const JsonValue& number) {
    if (!number.scalar.is_number_float()) {
        return static_cast<std::uint32_t>(number.scalar.get<std::uint64_t>());
    }
    constexpr double kLimit = 9223372036854775808.0; // 2^63
    const auto value = number.scalar.get<double>();
    return value >= -kLimit && value < kLimit ? static_cast<std::uint32_t>(static_cast<std::int64_t>(value)) : 0;
}

TitleFacts readTitle(const JsonValue& element, const workbench::SourceText& source) {
    const auto lineOf = [&source](const JsonValue& value) { return source.placeOf(value.begin).line; };
    TitleFacts title;
    title.line = lineOf(element);
    title.binaryName = textOf(element, "binary_name");
    title.titleName = textOf(element, "title_name");
    if (const JsonValue* publisher = workbench::findText(element, "publisher")) {
        title.publisher = publisher->text();
        title.publisherLine = lineOf(*publisher);
    }
    if (const JsonValue* id = workbench::findNumber(element, "id")) {
        title.id = toNumber(*id);
    }
    for (const JsonValue* object : workbench::findFields(element)) {
        TitleFacts::Field field{textOf(*object, "key"), textOf(*object, "value"), textOf(*object, "meta"), 0,
                                lineOf(*object)};
        if (const JsonValue* number = workbench::findNumber(*object, "value")) {
            field.number = static_cast<std::int32_t>(toNumber(*number));
        }
        // A later field of the same key replaces the earlier one.
        std::erase_if(title.fields, [&field](const TitleFacts::Field& other) { return other.key == field.key; });
        title.fields.push_back(std::move(field));
    }
    std::stable_sort(title.fields.begin(), title.fields.end(),
                     [](const auto& one, const auto& other) { return one.key < other.key; });
    for (const JsonValue* condition : workbench::findConditions(element)) {
        title.conditions.push_back({textOf(*condition, "key"), lineOf(*condition)});
    }
    return title;
}

bool isTitle(const JsonValue& element) {
    const JsonValue* type = element.isObject() ? workbench::findText(element, "config_type") : nullptr;
    return type && (type->text() == "txt" || type->text() == "reg");
}

// "1920x1080" as its two numbers.
std::pair<std::string, std::string> split(const std::string& resolution) {
    const std::size_t cross = resolution.find('x');
    return cross == std::string::npos ? std::pair<std::string, std::string>("0", "0")
                                      : std::pair(resolution.substr(0, cross), resolution.substr(cross + 1));
}

} // namespace

const TitleFacts* DatabaseFacts::find(const std::string& binaryName) const {
    // The last one replaces the earlier ones.
    const auto found = std::find_if(titles.rbegin(), titles.rend(),
                                    [&binaryName](const TitleFacts& title) { return title.binaryName == binaryName; });
    return found == titles.rend() ? nullptr : &*found;
}

const TitleFacts* DatabaseFacts::find(std::uint32_t id) const {
    const auto found =
        std::find_if(titles.rbegin(), titles.rend(), [id](const TitleFacts& title) { return title.id == id; });
    return found == titles.rend() ? nullptr : &*found;
}

DatabaseFacts readDatabaseFacts(const std::string& path, std::string text) {
    DatabaseFacts facts;
    const workbench::SourceText source(path, std::move(text));
    const workbench::JsonOutcome outcome = workbench::readJsonElements(source.text(), [&](const JsonValue& element) {
        if (!isTitle(element)) {
            return;
        }
        const TitleFacts& title = facts.titles.emplace_back(readTitle(element, source));
        if (title.id) {
            facts.ids.push_back(*title.id);
        }
    });
    const auto fault = [&](std::size_t offset, const std::string& message) {
        const workbench::Place place = source.placeOf(offset);
        facts.fault =
            "line " + std::to_string(place.line) + ", column " + std::to_string(place.column) + ": " + message;
    };
    if (outcome.fault) {
        fault(outcome.fault->offset, outcome.fault->message);
    } else if (outcome.rootType != nlohmann::json::value_t::array) {
        fault(outcome.rootBegin, "a database is an array of titles");
    }
    return facts;
}

std::vector<const TitleFacts::Field*> findFields(const TitleFacts& title, const std::string& wanted,
                                                 const std::string& nativeResolution,
                                                 const std::string& lowerResolution) {
    const auto native = split(nativeResolution);
    const auto lower = split(lowerResolution);
    const auto wantedOf = [&](const TitleFacts::Field& field) {
        if (!field.value.empty()) {
            return field.value;
        }
        return field.meta == "width"           ? lower.first
               : field.meta == "height"        ? lower.second
               : field.meta == "native_width"  ? native.first
               : field.meta == "native_height" ? native.second
                                               : std::to_string(field.number);
    };
    std::vector<const TitleFacts::Field*> fields;
    for (const TitleFacts::Field& field : title.fields) {
        if (wantedOf(field) == wanted) {
            fields.push_back(&field);
        }
    }
    return fields;
}

} // namespace brisk::logbook
