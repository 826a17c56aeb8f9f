#pragma once

#include "titles/TitleConfigAdapter.h"

#include <cstdint>
#include <map>
#include <string>

namespace brisk {

// Comparing a title's settings with the wanted ones and writing these, wherever the settings are kept. The adapter's
// exceptions (regular expressions, numbers) leave both.

// The current display's numbers, in pixels, by the name that a field's `meta` gives: "width", "height", "native_width",
// "native_height".
using ResolutionValues = std::map<std::string, std::int32_t>;

// Loads the configuration and answers whether a setting differs from the wanted one and no condition forbids patching.
// The first difference, or what forbids it, is logged.
bool needsToBeOptimized(TitleConfigAdapter& title, const ResolutionValues& resolutionValues);

// Loads the configuration, writes every wanted setting and saves. True, with a log line, when something was written and
// saved.
bool optimize(TitleConfigAdapter& title, const ResolutionValues& resolutionValues);

} // namespace brisk
