#include "tracking/GameEnd.h"

#include "base/Log.h"
#include "base/RunTimeParameters.h"
#include "state/UserState.h"
#include "tracking/Services.h"
#include "tracking/ToastTexts.h"
#include "tracking/Tracking.h"

namespace brisk {

namespace {

constexpr float kFpsRatioLimit = 0.85f; // an offer needs less
constexpr std::uint32_t kMaximumRefusals = 3;

constexpr char kOfferTitle[] = "Orlan Software: Meridian Edition Suggested Game Settings";

bool runsBelowRefreshRate(std::uint32_t refreshRate) {
    const float ratio = static_cast<float>(trackingContext.averageFps) / static_cast<float>(refreshRate);
    logLine("Brisk : FPS ratio to optimal is ", ratio);
    return ratio < kFpsRatioLimit;
}

bool shouldShowToast(const std::string& executableName) {
    logLine("Brisk : shouldShowToast");
    const bool needed = titleManager().isTitleNeedToBeOptimized(executableName);
    logLine("Brisk : titleManager.isTitleNeedToBeOptimized = ", std::dec, needed);
    if (!needed) {
        return false;
    }
    const bool allowed = areToastsAllowed();
    logLine("Brisk : areToastsAllowed = ", std::dec, allowed);
    if (!allowed) {
        return false;
    }
    const auto shown = static_cast<std::uint32_t>(getNumberOfToastsShown(executableName));
    logLine("Brisk : getNumberOfToastsShown = ", std::dec, shown);
    return shown < kMaximumRefusals;
}

void showOffer(const std::string& executableName, const DisplayInfo& optimal) {
    const std::string name = titleManager().getTitleName(executableName);
    const std::string adjustment = describeAdjustment(executableName, " for " + name, optimal);
    clearToasts();
    showToast(kOfferTitle, "Recommendations are available for " + name + " to improve your gaming experience.",
              adjustment,
              {{"Configure Settings", configureSettings}, {"Not Now", notNow}, {"Don't ask again", dontAskAgain}});
}

// Whether the game can be judged at all, and the resolution to offer. The title manager knows both resolutions
// afterwards.
bool prepareResolutions(const std::string& executableName, const DisplayInfo& current, const DisplayInfo& native,
                        DisplayInfo& optimal) {
    if (current.width != native.width || current.height != native.height) {
        logLine("Brisk : current display resolution is different to native display resolution. Skip.");
        return false;
    }
    titleManager().setNativeResolution(native.width, native.height);
    optimal = gfxInfo->getOptimalResolution(native);
    // LUMA needs no lower resolution.
    if (optimal.width == 0 && !titleManager().isLumaSupported(executableName)) {
        logLine("Brisk : couldn't get optimal display resolution. Skip.");
        clearToasts();
        showToast(kAdjustmentsTitle, kNoOptimalConfiguration, "", {});
        return false;
    }
    titleManager().setResolution(optimal.width, optimal.height);
    return true;
}

} // namespace

void onAppFinished(HWND window, WPARAM wParam, LPARAM lParam) {
    logLine("Brisk : ", "onAppFinished, p1 = ", std::dec, wParam, ", p2 = ", std::hex, std::showbase, lParam);
    if (trackingState == TrackingState::Idle) {
        logLine("Brisk : got BRISK_APP_FINISHED message in IDLE state.");
        return;
    }
    KillTimer(window, kTrackingTimerId);
    switchToState(TrackingState::Idle);
    const TrackingContext& context = trackingContext;
    logLine("Brisk : ", "average fps = ", std::dec, context.averageFps, ", intervals = ", context.sampleCount);

    const DisplayInfo current = gfxInfo->getCurrentDisplayInfo();
    const DisplayInfo native = gfxInfo->getNativeDisplayInfo();
    logNativeResolution(native);
    DisplayInfo optimal;
    if (!prepareResolutions(context.executableName, current, native, optimal)) {
        return;
    }
    if (context.sampleCount < NumberOfTrackingIntervalsToBeValid) {
        logLine("Brisk : insufficient data collected (", std::dec, context.sampleCount, " intervals).");
        return;
    }
    if (runsBelowRefreshRate(native.refreshRate) && shouldShowToast(context.executableName)) {
        showOffer(context.executableName, optimal);
    }
}

void configureSettings() {
    logLine("Brisk : Toast : Configure Settings");
    if (!patchTitle(getTrackedExecutableName())) {
        clearToasts();
        showToast(kAdjustmentsTitle, kAdjustmentErrors, "", {});
    }
}

void notNow() {
    logLine("Brisk : Toast : Not now");
    const std::string executableName = getTrackedExecutableName();
    const char* outcome = incNumberOfToastsShown(executableName) ? "Brisk : increment toasts counter for "
                                                                 : "Brisk : failed to increment toasts counter for ";
    logLine(outcome, executableName);
}

void dontAskAgain() {
    logLine("Brisk : Toast : Don't ask again");
    logLine(disallowToasts() ? "Brisk : toasts disabled" : "Brisk : failed to disable toasts");
}

void logNativeResolution(const DisplayInfo& native) {
    logLine("Brisk : native resolution: ", std::dec, native.width, "x", native.height);
    logLine("Brisk : aspect ratio: ", getAspectRatio(native));
}

std::string describeAdjustment(const std::string& executableName, const std::string& forTitle,
                               const DisplayInfo& optimal) {
    return titleManager().isLumaSupported(executableName)
               ? "Enabled LUMA" + forTitle + " using " + titleManager().getSettingText(executableName) + "."
               : "Enabled TANO" + forTitle + " using " + std::to_string(optimal.width) + "x" +
                     std::to_string(optimal.height) + ".";
}

bool patchTitle(const std::string& executableName) {
    if (!titleManager().optimizeTitle(executableName)) {
        logLine("Brisk : failed to patch ", executableName);
        return false;
    }
    const char* marker =
        setPatched(executableName) ? "Brisk : patch marker set for " : "Brisk : failed to set patch marker for ";
    logLine(marker, executableName);
    return true;
}

} // namespace brisk
