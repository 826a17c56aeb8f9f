#include "titles/PatchConditions.h"

#include "base/Log.h"

#include <algorithm>
#include <limits>
#include <type_traits>

namespace brisk {

namespace {

enum class Verdict { Met, Missing, Forbidden };

template <class Value>
Verdict judge(const PatchCondition& condition, const std::vector<Value>& allowed, const Value& current,
              const std::type_identity_t<Value>& missing) {
    if (current == missing) {
        if (condition.absence) {
            return Verdict::Met;
        }
        logLine("Brisk : unable to find configuration field with key '", condition.key, "'. Skip patching.");
        return Verdict::Missing;
    }
    if (std::find(allowed.begin(), allowed.end(), current) != allowed.end()) {
        return Verdict::Met;
    }
    // No line end: this stands at the front of the next line (docs/decisions/kept-behaviour.md).
    logText("Brisk : current configuration with key '", condition.key, "' and value '", std::dec, current,
            "' doesn't meet requirements.");
    return Verdict::Forbidden;
}

} // namespace

bool meetsConditions(TitleConfigAdapter& title) {
    constexpr std::int32_t kMissing = std::numeric_limits<std::int32_t>::max();
    bool met = true;
    for (const PatchCondition& condition : title.patchConditions) {
        const Verdict text = condition.presenceValues.empty()
                                 ? Verdict::Met
                                 : judge(condition, condition.presenceValues, title.getValue(condition.key, {}), {});
        // A forbidden value ends the check; a missing setting does not, so that the log names each one
        // (docs/decisions/kept-behaviour.md).
        if (text == Verdict::Forbidden) {
            return false;
        }
        const Verdict number =
            condition.presenceNumbers.empty()
                ? Verdict::Met
                : judge(condition, condition.presenceNumbers, title.getIntValue(condition.key, kMissing), kMissing);
        if (number == Verdict::Forbidden) {
            return false;
        }
        met = met && text == Verdict::Met && number == Verdict::Met;
    }
    return met;
}

} // namespace brisk
