#pragma once

#include "titles/TitleSettings.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brisk::workbench {

struct Size {
    std::uint32_t width;
    std::uint32_t height;
};

// A player's display and the lower resolution that the service chose for it; nothing: there is none.
struct Display {
    Size native;
    std::optional<Size> lower;
};

// "1920x1080"; nothing for anything else.
std::optional<Size> parseSize(std::string_view text);

// The display of that size, with the lower resolution that the service would most likely choose among the modes that
// such displays have: the next one below of the same shape.
Display displayOf(Size native);

// Those of most players, and one without a lower resolution.
std::vector<Display> usualDisplays();

// "1920x1080 with 1600x900", "1920x1080 without a lower resolution".
std::string describe(const Display& display);

// The numbers behind the resolution names of the database.
ResolutionValues resolutionsOf(const Display& display);

} // namespace brisk::workbench
