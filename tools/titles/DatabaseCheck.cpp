#include "tools/titles/DatabaseCheck.h"

#include "tools/titles/JsonReader.h"
#include "tools/titles/KeyRules.h"
#include "tools/titles/LocationRules.h"
#include "tools/titles/PatternRules.h"
#include "tools/titles/Report.h"
#include "tools/titles/Suggestion.h"
#include "tools/titles/TitleParts.h"
#include "tools/titles/ValueRules.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

namespace brisk::workbench {

namespace {

using Type = nlohmann::json::value_t;

constexpr std::array<std::string_view, 2> kTypes{"txt", "reg"};

// Finds what stands twice, and names the earlier place.
class CrossCheck {
public:
    CrossCheck(const SourceText& source, Report& output) : database(source), report(output) {}

    void add(const JsonValue& title) {
        if (const JsonValue* name = findText(title, "binary_name")) {
            auto [earlier, isNew] = names.emplace(name->text(), name->begin);
            if (!isNew) {
                report.add(Severity::Error, "duplicate-binary-name", *name,
                           "a later title of the same executable replaces the earlier one, which stands " +
                               placeOf(earlier->second) + " and is hidden");
                earlier->second = name->begin;
            }
        }
        if (const JsonValue* id = findNumber(title, "id")) {
            const auto [earlier, isNew] = ids.emplace(id->scalar.get<double>(), id->begin);
            if (!isNew) {
                report.add(Severity::Error, "duplicate-id", *id,
                           "another title has the same id, " + placeOf(earlier->second) +
                               ": the host cannot tell the two games apart");
            }
        }
        std::map<std::string, std::size_t> keys;
        for (const JsonValue* field : findFields(title)) {
            const JsonValue* key = findText(*field, "key");
            if (!key) {
                continue;
            }
            auto [earlier, isNew] = keys.emplace(key->text(), key->begin);
            if (!isNew) {
                report.add(Severity::Error, "duplicate-field", *key,
                           "a later setting of the same key replaces the earlier one, which stands " +
                               placeOf(earlier->second));
                earlier->second = key->begin;
            }
        }
    }

private:
    std::string placeOf(std::size_t offset) const {
        const Place place = database.placeOf(offset);
        return "in line " + std::to_string(place.line) + ", column " + std::to_string(place.column);
    }

    const SourceText& database;
    Report& report;
    std::map<std::string, std::size_t> names; // where each stands first
    std::map<double, std::size_t> ids;
};

// Whether the service takes the element for a title at all; says so where it does not.
bool checkType(const JsonValue& element, Report& report) {
    if (!element.isObject()) {
        report.add(Severity::Error, "element-type", element,
                   "a title is an object, {...}; the service skips anything else in silence");
        return false;
    }
    const JsonValue* type = findText(element, "config_type");
    if (type && std::find(kTypes.begin(), kTypes.end(), type->text()) == kTypes.end()) {
        report.add(Severity::Error, "config-type", *type,
                   "\"" + type->text() +
                       "\" is no \"config_type\", and the service skips the title; write \"txt\" or \"reg\"" +
                       didYouMean(type->text(), kTypes));
        return false;
    }
    return true;
}

void checkEncoding(std::string_view text, Report& report) {
    if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) {
        report.add(Severity::Error, "json-encoding", 0, 2,
                   "the file is saved as UTF-16, which the service does not read; save it as UTF-8");
    }
}

void checkRoot(const JsonOutcome& outcome, std::size_t titles, Report& report) {
    if (outcome.fault) {
        report.add(Severity::Error, outcome.fault->rule.c_str(), outcome.fault->offset, outcome.fault->offset + 1,
                   outcome.fault->message);
    } else if (outcome.rootType != Type::array) {
        report.add(
            Severity::Error, "not-an-array", outcome.rootBegin, outcome.rootBegin + 1,
            std::string("a database is an array of titles, [...]; the service ends at its start with anything else") +
                (outcome.rootType == Type::object
                     ? ". A title's own file may do without the array: `build` and `test` take it, and check it"
                     : ""));
    } else if (titles == 0) {
        report.add(Severity::Error, "no-title", outcome.rootBegin, outcome.rootBegin + 1,
                   "there is no title in the database, and the service ends at its start");
    }
}

} // namespace

DatabaseCheck checkDatabase(const SourceText& database, const std::function<void(std::size_t)>& onProgress) {
    DatabaseCheck check;
    Report report;
    checkEncoding(database.text(), report);
    if (report.found.empty()) {
        CrossCheck cross(database, report);
        PatternRules patterns(database.text());
        const JsonOutcome outcome = readJsonElements(database.text(), [&](const JsonValue& element) {
            const JsonValue* name = element.isObject() ? findText(element, "binary_name") : nullptr;
            report.setTitle(name ? std::optional(name->text()) : std::nullopt);
            if (!checkType(element, report)) {
                return;
            }
            if (findText(element, "config_type")) {
                ++check.titles;
            }
            checkKeys(element, report);
            checkLocations(database.text(), element, report);
            checkValues(element, report);
            patterns.check(element, report);
            cross.add(element);
            if (onProgress) {
                onProgress(element.end);
            }
        });
        report.setTitle(std::nullopt);
        checkRoot(outcome, check.titles, report);
    }
    std::stable_sort(report.found.begin(), report.found.end(),
                     [](const Finding& one, const Finding& other) { return one.begin < other.begin; });
    check.findings = std::move(report.found);
    return check;
}

} // namespace brisk::workbench
