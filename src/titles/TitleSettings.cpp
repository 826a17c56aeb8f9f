#include "titles/TitleSettings.h"

#include "base/Log.h"
#include "titles/PatchConditions.h"

#include <limits>

namespace brisk {

namespace {

std::int32_t getWantedNumber(const ConfigField& field, const ResolutionValues& resolutionValues) {
    const auto resolutionValue = resolutionValues.find(field.meta);
    return resolutionValue == resolutionValues.end() ? field.intValue : resolutionValue->second;
}

// The value to create: the database's own, also where a resolution would replace it in an existing setting.
std::string getCreatedValue(const ConfigField& field) {
    std::string created = field.createValue;
    if (const std::size_t star = created.find('*'); star != std::string::npos) {
        created.replace(star, 1, field.value.empty() ? std::to_string(field.intValue) : field.value);
    }
    return created;
}

template <class Value>
bool logNotOptimal(const Value& current, const Value& wanted) {
    logLine("Brisk : game setting '", std::dec, current, "' is not optimal '", wanted, "'.");
    return true;
}

bool hasDifference(TitleConfigAdapter& title, const ResolutionValues& resolutionValues) {
    for (const auto& [key, field] : title.configFields) {
        if (!field.value.empty()) {
            if (const std::string current = title.getValue(key, {}); current != field.value) {
                return logNotOptimal(current, field.value);
            }
        } else {
            const std::int32_t wanted = getWantedNumber(field, resolutionValues);
            if (const std::int32_t current = title.getIntValue(key, 0); current != wanted) {
                return logNotOptimal(current, wanted);
            }
        }
    }
    return false;
}

// False when the setting is known not to have been written.
bool writeField(TitleConfigAdapter& title, const std::string& key, const ConfigField& field,
                const ResolutionValues& resolutionValues) {
    constexpr std::int32_t kMissing = std::numeric_limits<std::int32_t>::min();
    const bool isNumeric = field.value.empty();
    const bool creates = !field.createKey.empty() &&
                         (isNumeric ? title.getIntValue(key, kMissing) == kMissing : title.getValue(key, {}).empty());
    if (creates) {
        return title.setValue(field.createKey, getCreatedValue(field));
    }
    return isNumeric ? title.setIntValue(key, getWantedNumber(field, resolutionValues))
                     : title.setValue(key, field.value);
}

} // namespace

bool needsToBeOptimized(TitleConfigAdapter& title, const ResolutionValues& resolutionValues) {
    if (!title.loadConfig()) {
        logLine("Brisk : unable to load configuration.");
        return false;
    }
    return hasDifference(title, resolutionValues) && meetsConditions(title);
}

bool optimize(TitleConfigAdapter& title, const ResolutionValues& resolutionValues) {
    if (!title.loadConfig()) {
        return false;
    }
    bool changed = false;
    for (const auto& [key, field] : title.configFields) {
        changed |= writeField(title, key, field, resolutionValues);
    }
    if (!changed || !title.saveConfig()) {
        return false;
    }
    logLine("Brisk : '", title.titleName, "' optimized.");
    return true;
}

} // namespace brisk
