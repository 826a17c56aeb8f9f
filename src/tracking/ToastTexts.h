#pragma once

namespace brisk {

// Texts that toasts of several occasions share.
inline constexpr char kAdjustmentsTitle[] = "Orlan Software: Meridian Edition Game Adjustments";
inline constexpr char kNoOptimalConfiguration[] =
    "Game adjustments have not been applied due to an unexpected issue while obtaining the optimal configuration.";

} // namespace brisk
