#pragma once

namespace brisk {

// Texts that toasts of several occasions share.
inline constexpr char kAdjustmentsTitle[] = "Orlan Software: Meridian Edition Game Adjustments";
// A title could not be adjusted; after a bulk pass with a blank at the end (docs/decisions/kept-behaviour.md).
inline constexpr char kAdjustmentErrors[] =
    "Orlan Software: Meridian Edition has encountered some errors while adjusting game settings. This may be resolved "
    "by starting and stopping the game, or by changing graphics settings.";
inline constexpr char kNoOptimalConfiguration[] =
    "Game adjustments have not been applied due to an unexpected issue while obtaining the optimal configuration.";

} // namespace brisk
