#include "tracking/BulkPatching.h"

#include "base/Log.h"
#include "tracking/GameEnd.h"
#include "tracking/Services.h"
#include "tracking/ToastTexts.h"

#include <optional>

namespace brisk {

namespace {

constexpr char kSomePatched[] =
    "Orlan Software: Meridian Edition made adjustments to improve your gaming experience for some games.";
constexpr char kReadMoreHint[] = "Use \"Read More\" to find details on the adjustments made.";
constexpr char kAllOptimal[] = "Orlan Software: Meridian Edition has detected that optimal settings have already been "
                               "applied for supported games.";
constexpr char kReportSubtitle[] =
    "Orlan Software: Meridian Edition made adjustments to improve your gaming experience for:";

enum class TitleOutcome { NothingToDo, Patched, Failed };

// Nothing when the title's configuration is not on this machine.
std::optional<TitleOutcome> adjustTitle(const std::string& binaryName) {
    // An empty publisher matches any title; without a game directory only fixed locations are found.
    if (!titleManager().isTitleSupported("", binaryName, "")) {
        logLine("Brisk : config for ", binaryName, " was not found. Skip.");
        return std::nullopt;
    }
    if (!titleManager().isTitleNeedToBeOptimized(binaryName)) {
        logLine("Brisk : ", binaryName, " doesn't need optimization. Skip.");
        return TitleOutcome::NothingToDo;
    }
    return patchTitle(binaryName) ? TitleOutcome::Patched : TitleOutcome::Failed;
}

std::string describe(TitleOutcome outcome, const std::string& binaryName, const DisplayInfo& optimal) {
    switch (outcome) {
    case TitleOutcome::NothingToDo:
        return "No additional adjustments required.";
    case TitleOutcome::Failed:
        return "An unexpected issue was encountered.";
    case TitleOutcome::Patched:
        break;
    }
    return describeAdjustment(binaryName, "", optimal);
}

} // namespace

BulkOutcome doMassivePatching(std::string& report) {
    logLine("Brisk : doMassivePatching");
    const DisplayInfo native = gfxInfo->getNativeDisplayInfo();
    logNativeResolution(native);
    titleManager().setNativeResolution(native.width, native.height);
    const DisplayInfo optimal = gfxInfo->getOptimalResolution(native);
    if (optimal.width == 0) {
        logLine("Brisk : couldn't get optimal display resolution. Skip.");
        return BulkOutcome::NoOptimalResolution;
    }
    titleManager().setResolution(optimal.width, optimal.height);
    bool patched = false;
    bool failed = false;
    for (const std::string& binaryName : titleManager().getBinaryNames()) {
        const std::optional<TitleOutcome> outcome = adjustTitle(binaryName);
        if (!outcome) {
            continue;
        }
        patched |= outcome == TitleOutcome::Patched;
        failed |= outcome == TitleOutcome::Failed;
        report += titleManager().getTitleName(binaryName) + "\n" + describe(*outcome, binaryName, optimal) + "\n";
    }
    if (failed) {
        return BulkOutcome::Failed;
    }
    return patched ? BulkOutcome::Patched : BulkOutcome::NothingToDo;
}

void onMassivePatching() {
    logLine("Brisk : onMassivePatching");
    clearToasts();
    std::string report;
    const BulkOutcome outcome = doMassivePatching(report);
    const std::vector<ToastAction> buttons{{"Read More", [report] { readMore(report); }}, {"Dismiss", [] {}}};
    switch (outcome) {
    case BulkOutcome::Patched:
        showToast(kAdjustmentsTitle, kSomePatched, kReadMoreHint, buttons);
        break;
    case BulkOutcome::NothingToDo:
        showToast(kAdjustmentsTitle, kAllOptimal, "", {});
        break;
    case BulkOutcome::NoOptimalResolution:
        showToast(kAdjustmentsTitle, kNoOptimalConfiguration, "", {});
        break;
    case BulkOutcome::Failed:
        showToast(kAdjustmentsTitle, std::string(kAdjustmentErrors) + " ", "", buttons);
        break;
    }
}

void readMore(const std::string& report) {
    logLine("Brisk : Toast : Read more");
    clearToasts();
    showToast(kAdjustmentsTitle, kReportSubtitle, report, {});
}

} // namespace brisk
