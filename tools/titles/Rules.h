#pragma once

#include <span>
#include <string_view>

namespace brisk::workbench {

// The codes of all rules for a database alone, in the order of docs/title-rules.md.
std::span<const std::string_view> allRules();

// Those that are about a database together with a settings file; they have the page's second part.
std::span<const std::string_view> previewRules();

} // namespace brisk::workbench
