#pragma once

#include <span>
#include <string>
#include <string_view>

namespace brisk::workbench {

// "; did you mean \"...\"?" with the known name that is nearest to a misspelt one, or nothing when none is near. Letter
// case and a swap of two neighbours count as one slip.
std::string didYouMean(std::string_view misspelt, std::span<const std::string_view> known);

} // namespace brisk::workbench
