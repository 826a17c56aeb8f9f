#pragma once

#include "tools/titles/KeyAnalysis.h"
#include "tools/titles/Report.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace brisk::workbench {

// The keys of text titles: what is wrong with the expressions, and with what they do to their own values. Titles share
// keys: what is known of one is kept.
class PatternRules {
public:
    // The text must outlive the rules.
    explicit PatternRules(std::string_view database) : source(database) {}

    void check(const JsonValue& title, Report& report);

private:
    void checkField(const JsonValue& field, Report& report);
    void checkCondition(const JsonValue& condition, Report& report);
    void checkPresence(const JsonValue& key, const JsonValue& presence, Report& report);
    void checkKey(const JsonValue& key, KeyRole role, Report& report);
    // What a trial found, tried once for all that it depends on.
    template <typename Trial>
    const std::optional<std::string>& tried(const std::string& what, const Trial& trial);

    std::string_view source;
    std::unordered_map<std::string, std::vector<KeyFinding>> known;          // by role and key
    std::unordered_map<std::string, std::optional<std::string>> knownTrials; // by all of it
};

} // namespace brisk::workbench
