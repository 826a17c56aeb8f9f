#pragma once

#include "pattern/PatternTree.h"
#include "tools/titles/Finding.h"

#include <optional>
#include <string>
#include <vector>

namespace brisk::workbench {

// What a key of a text title is for.
enum class KeyRole { Condition, NumericCondition, Setting, NumericSetting, Creation };

struct KeyFinding {
    Severity severity;
    const char* rule;
    std::optional<PatternSpan> span; // bytes of the key; nothing for the key as a whole
    std::string message;
};

// What is wrong with a key, whatever the title is. Any text ends in findings.
std::vector<KeyFinding> analyseKey(const std::string& key, KeyRole role);

} // namespace brisk::workbench
