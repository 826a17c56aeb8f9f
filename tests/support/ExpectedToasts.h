// The service's toasts as its user reads them, told a second time: nothing here is taken from the product.
#pragma once

#include "support/ToastXml.h"

#include <utility>

namespace brisk::testing {

inline constexpr char kOfferTitle[] = "Orlan Software: Meridian Edition Suggested Game Settings";
inline constexpr char kAdjustmentsTitle[] = "Orlan Software: Meridian Edition Game Adjustments";
inline constexpr char kReportSubtitle[] =
    "Orlan Software: Meridian Edition made adjustments to improve your gaming experience for:";

// What an adjustment turns on; of a game in an offer, of the report's title otherwise.
inline std::string enabledTano(const std::string& resolution, const std::string& game = {}) {
    return "Enabled TANO" + (game.empty() ? "" : " for " + game) + " using " + resolution + ".";
}
inline std::string enabledLuma(const std::string& words, const std::string& game = {}) {
    return "Enabled LUMA" + (game.empty() ? "" : " for " + game) + " using " + words + ".";
}

// What the report says of other titles.
inline constexpr char kNothingAdjusted[] = "No additional adjustments required.";
inline constexpr char kAdjustmentFailed[] = "An unexpected issue was encountered.";

inline std::string offerToast(const std::string& game, const std::string& adjustment) {
    return toastDocument(kOfferTitle,
                         "Recommendations are available for " + game + " to improve your gaming experience.",
                         "<text>" + adjustment + "</text>", {"Configure Settings", "Not Now", "Don't ask again"});
}

// A toast of a judgement or a bulk pass.
inline std::string noOptimalConfigurationToast() {
    return plainToast(kAdjustmentsTitle, "Game adjustments have not been applied due to an unexpected issue while "
                                         "obtaining the optimal configuration.");
}

// Toasts of one game's adjustment and of a bulk pass. The bulk pass's has a blank at its end.
inline constexpr char kSomeErrors[] =
    "Orlan Software: Meridian Edition has encountered some errors while adjusting game settings. This may be resolved "
    "by starting and stopping the game, or by changing graphics settings.";
inline std::string gameFailedToast() {
    return plainToast(kAdjustmentsTitle, kSomeErrors);
}
inline std::string bulkFailedToast() {
    return toastDocument(kAdjustmentsTitle, std::string(kSomeErrors) + " ", "<text></text>", {"Read More", "Dismiss"});
}

// The other toasts of a bulk pass.
inline std::string bulkPatchedToast() {
    // The hint's quotes make no attribute: they stand in a text.
    return toastDocument(
        kAdjustmentsTitle,
        "Orlan Software: Meridian Edition made adjustments to improve your gaming experience for some games.",
        R"(<text>Use "Read More" to find details on the adjustments made.</text>)", {"Read More", "Dismiss"});
}
inline std::string bulkNothingToDoToast() {
    return plainToast(kAdjustmentsTitle, "Orlan Software: Meridian Edition has detected that optimal settings have "
                                         "already been applied for supported games.");
}

// Titles with what was done with each, and the toast of "Read More".
using Report = std::vector<std::pair<std::string, std::string>>;

inline std::string reportText(const Report& titles) {
    std::string text;
    for (const auto& [title, detail] : titles) {
        text += title + "\n" + detail + "\n";
    }
    return text;
}

inline std::string reportToast(const Report& titles) {
    constexpr std::size_t kTitlesAGroup = 3;
    std::string body = "<group><subgroup>";
    for (std::size_t i = 0; i < titles.size(); ++i) {
        if (i > 0 && i % kTitlesAGroup == 0) {
            body += "</subgroup></group><group><subgroup>";
        }
        body += R"(<text  hint-style="base">)" + titles[i].first + R"(</text>\n<text  hint-style="captionSubtle">)" +
                titles[i].second + R"(</text>\n)";
    }
    return toastDocument(kAdjustmentsTitle, kReportSubtitle, body + "</subgroup></group>", {});
}

} // namespace brisk::testing
