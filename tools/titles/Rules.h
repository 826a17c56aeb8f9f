#pragma once

#include <span>
#include <string_view>

namespace brisk::workbench {

// The codes of all rules, in the order of docs/title-rules.md.
std::span<const std::string_view> allRules();

} // namespace brisk::workbench
