#include "gfx/OptimalResolution.h"

#include <cmath>
#include <iterator>
#include <set>
#include <utility>

namespace brisk {

DisplayInfo findOptimalResolution(const std::vector<DisplayInfo>& modes, const DisplayInfo& reference) {
    constexpr float kAspectTolerance = 0.01f;
    const float aspect = getAspectRatio(reference);
    // A set: modes that differ only in depth or frequency count once.
    std::set<std::pair<std::int32_t, std::int32_t>> accepted;
    for (const DisplayInfo& mode : modes) {
        // Not a number (a width of 0) is within no tolerance.
        if (std::abs(getAspectRatio(mode) - aspect) <= kAspectTolerance && mode.width <= reference.width) {
            accepted.emplace(static_cast<std::int32_t>(mode.width), static_cast<std::int32_t>(mode.height));
        }
    }
    if (accepted.size() < 2) {
        return {};
    }
    const auto& [width, height] = *std::next(accepted.rbegin());
    return {static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height), 0, 0};
}

} // namespace brisk
