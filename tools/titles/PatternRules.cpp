#include "tools/titles/PatternRules.h"

#include "tools/titles/JsonText.h"
#include "tools/titles/SettingTrial.h"
#include "tools/titles/TitleParts.h"

#include <algorithm>

namespace brisk::workbench {

namespace {

// What is kept must not outgrow the database by much.
constexpr std::size_t kMostKnown = 50'000;

bool isNumeric(const JsonValue& field) {
    const JsonValue* value = findText(field, "value");
    return !value || value->text().empty();
}

WantedValue wantedOf(const JsonValue& field) {
    if (!isNumeric(field)) {
        return {findText(field, "value")->text(), false};
    }
    const JsonValue* number = findNumber(field, "value");
    return {number ? number->scalar.dump() : "0", true};
}

// With a resolution's name its number is written.
WantedValue writtenOf(const JsonValue& field) {
    const JsonValue* meta = findText(field, "meta");
    const bool isResolution = isNumeric(field) && meta && !meta->text().empty();
    return isResolution ? WantedValue{"1920", true} : wantedOf(field);
}

// The numbers that are read as they are written; the others have rules of their own.
bool isPlain(const WantedValue& wanted) {
    constexpr std::size_t kDigits = 11;
    return !wanted.isNumber ||
           (wanted.text.size() <= kDigits && wanted.text.find_first_not_of("-0123456789") == std::string::npos);
}

} // namespace

void PatternRules::check(const JsonValue& title, Report& report) {
    if (isRegistryTitle(title)) {
        return;
    }
    for (const JsonValue* field : findFields(title)) {
        checkField(*field, report);
    }
    for (const JsonValue* condition : findConditions(title)) {
        checkCondition(*condition, report);
    }
}

void PatternRules::checkKey(const JsonValue& key, KeyRole role, Report& report) {
    std::string name = key.text();
    name += static_cast<char>('0' + static_cast<int>(role));
    auto found = known.find(name);
    if (found == known.end()) {
        if (known.size() > kMostKnown) {
            known.clear();
        }
        found = known.emplace(std::move(name), analyseKey(key.text(), role)).first;
    }
    for (const KeyFinding& finding : found->second) {
        std::size_t begin = key.begin;
        std::size_t end = key.end;
        if (finding.span) {
            begin = placeInText(source, key, finding.span->begin);
            end = std::max(begin + 1, placeInText(source, key, finding.span->end));
        }
        report.add(finding.severity, finding.rule, begin, end, finding.message);
    }
}

template <typename Trial>
const std::optional<std::string>& PatternRules::tried(const std::string& what, const Trial& trial) {
    auto found = knownTrials.find(what);
    if (found == knownTrials.end()) {
        if (knownTrials.size() > kMostKnown) {
            knownTrials.clear();
        }
        found = knownTrials.emplace(what, trial()).first;
    }
    return found->second;
}

void PatternRules::checkField(const JsonValue& field, Report& report) {
    const JsonValue* key = findText(field, "key");
    const std::string nul(1, '\0');
    if (key) {
        checkKey(*key, isNumeric(field) ? KeyRole::NumericSetting : KeyRole::Setting, report);
        const WantedValue wanted = writtenOf(field);
        const JsonValue::Member* value = field.find("value");
        if (isPlain(wanted) && (value || field.find("meta"))) {
            const auto& fault = tried(key->text() + nul + wanted.text + (wanted.isNumber ? "#" : "\""),
                                      [&] { return tryWriting(key->text(), wanted); });
            if (fault) {
                report.add(Severity::Error, "value-not-found", value ? value->value : *key,
                           "the setting's own key does not find this value once it is written (" + *fault +
                               "), so the title needs adjusting for ever; let group 2 take it");
            }
        }
    }
    const JsonValue* createKey = findText(field, "create_key");
    if (!createKey || createKey->text().empty()) {
        return;
    }
    checkKey(*createKey, KeyRole::Creation, report);
    const JsonValue* createValue = findText(field, "create_value");
    const WantedValue wanted = wantedOf(field);
    if (!key || !createValue || !isPlain(wanted)) {
        return;
    }
    const auto& fault = tried(key->text() + nul + wanted.text + nul + createKey->text() + nul + createValue->text(),
                              [&] { return tryCreation(key->text(), wanted, createKey->text(), createValue->text()); });
    if (fault) {
        report.add(Severity::Error, "created-not-found", *createValue,
                   "the setting's own key does not find what is created (" + *fault +
                       "), so it is created again, or written over, with the next pass");
    }
}

void PatternRules::checkCondition(const JsonValue& condition, Report& report) {
    const JsonValue* key = findText(condition, "key");
    if (!key) {
        return;
    }
    const JsonValue* presence = findArray(condition, "presence");
    const bool hasNumbers = presence && std::any_of(presence->items.begin(), presence->items.end(),
                                                    [](const JsonValue& allowed) { return allowed.isNumber(); });
    checkKey(*key, hasNumbers ? KeyRole::NumericCondition : KeyRole::Condition, report);
    if (presence) {
        checkPresence(*key, *presence, report);
    }
}

void PatternRules::checkPresence(const JsonValue& key, const JsonValue& presence, Report& report) {
    const std::string nul(1, '\0');
    std::vector<std::pair<const JsonValue*, std::string>> faults;
    for (const JsonValue& allowed : presence.items) {
        if (!allowed.isString() && !allowed.isNumber()) {
            continue;
        }
        const WantedValue value{allowed.isString() ? allowed.text() : allowed.scalar.dump(), allowed.isNumber()};
        if (!isPlain(value)) {
            continue;
        }
        if (const auto& fault = tried(key.text() + nul + value.text + (value.isNumber ? "#" : "\""),
                                      [&] { return tryWriting(key.text(), value); })) {
            faults.emplace_back(&allowed, *fault);
        }
    }
    // One that is never there does no harm beside others that are.
    const Severity severity = faults.size() == presence.items.size() ? Severity::Error : Severity::Warning;
    for (const auto& [allowed, fault] : faults) {
        report.add(severity, "presence-not-found", *allowed,
                   "the condition's key can never find this value (" + fault + " where it stands)");
    }
}

} // namespace brisk::workbench
