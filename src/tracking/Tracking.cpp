#include "tracking/Tracking.h"

#include "base/Executables.h"
#include "base/Log.h"
#include "base/RunTimeParameters.h"
#include "tracking/Services.h"

#include <map>
#include <mutex>

namespace brisk {

TrackingState trackingState = TrackingState::Idle;
// Never destroyed: a button's action may ask for the name until the process ends.
TrackingContext& trackingContext = *new TrackingContext;

namespace {

constexpr UINT kTrackingPeriod = 1000; // milliseconds

constexpr float kLowestFps = 15.0f;
constexpr float kHighestFps = 300.0f;

// Held while executableName is written, and while another thread reads it.
std::mutex executableNameMutex;

DWORD getWindowProcess(HWND window) {
    DWORD processId = 0;
    GetWindowThreadProcessId(window, &processId);
    return processId;
}

void countInterval(std::uint64_t limit, TrackingState next) {
    if (++trackingContext.intervalCounter >= limit) {
        switchToState(next);
    }
}

void sampleFrameRate() {
    const auto fps =
        static_cast<float>(fpsOverride ? static_cast<std::uint32_t>(*fpsOverride) : gfxInfo->getCurrentFps());
    logLine("Brisk : FPS = ", fps);
    addFpsSample(fps);
}

} // namespace

std::string getStateName(TrackingState state) {
    static const std::map<TrackingState, std::string> names{{TrackingState::Idle, "IDLE"},
                                                            {TrackingState::WaitingApp, "WAITING_APP"},
                                                            {TrackingState::AppWarming, "APP_WARMING"},
                                                            {TrackingState::Tracking, "TRACKING"},
                                                            {TrackingState::NotTracking, "NOT_TRACKING"}};
    const auto name = names.find(state);
    return name == names.end() ? "UNKNOWN" : name->second;
}

void switchToState(TrackingState state) {
    trackingContext.intervalCounter = 0;
    trackingState = state;
    logLine("Brisk : switch to ", getStateName(state));
}

void resetTrackingContext() {
    const std::lock_guard lock(executableNameMutex);
    trackingContext = {};
}

std::string getTrackedExecutableName() {
    const std::lock_guard lock(executableNameMutex);
    return trackingContext.executableName;
}

void addFpsSample(float fps) {
    if (fps < kLowestFps || fps > kHighestFps) {
        return;
    }
    TrackingContext& context = trackingContext;
    ++context.sampleCount;
    // Through single precision, so that large sums lose their low digits (docs/decisions/kept-behaviour.md).
    context.fpsSum = static_cast<std::uint64_t>(static_cast<float>(context.fpsSum) + fps);
    context.averageFps = static_cast<std::uint32_t>(context.fpsSum / context.sampleCount);
}

void onAppStarted(HWND window, WPARAM wParam, LPARAM lParam) {
    const auto gameId = static_cast<std::uint32_t>(wParam);
    const auto processId = static_cast<std::uint32_t>(lParam);
    logLine("Brisk : ", "onAppStarted, p1 = ", std::dec, gameId, ", p2 = ", std::hex, std::showbase, processId);
    if (trackingState != TrackingState::Idle) {
        logLine("Brisk : stop tracking, doesn't track more than one app");
        KillTimer(window, kTrackingTimerId);
        switchToState(TrackingState::Idle);
        resetTrackingContext();
        return;
    }
    if (!titleManager().isTitleIdKnown(gameId)) {
        logLine("Brisk : GameID ", std::dec, gameId, " is not supported. Skip.");
        return;
    }
    clearToasts();
    logLine("Brisk : waiting for activation, GameID ", std::dec, gameId, ", PID ", std::hex, std::showbase, processId);
    resetTrackingContext();
    trackingContext.gameId = gameId;
    trackingContext.processId = processId;
    switchToState(TrackingState::WaitingApp);
    SetTimer(window, kTrackingTimerId, kTrackingPeriod, nullptr);
}

void onTrackingTimer(HWND window) {
    switch (trackingState) {
    case TrackingState::WaitingApp:
        if (shouldStartTracking(window)) {
            switchToState(TrackingState::AppWarming);
        }
        break;
    case TrackingState::AppWarming:
        if (isTrackedAppActive(window)) {
            countInterval(NumberOfIntervalsForWarming, TrackingState::Tracking);
        }
        break;
    case TrackingState::Tracking:
        if (isTrackedAppActive(window)) {
            ++trackingContext.intervalCounter;
            sampleFrameRate();
        }
        if (trackingContext.intervalCounter >= NumberOfIntervalsForTracking) {
            switchToState(TrackingState::NotTracking);
        }
        break;
    case TrackingState::NotTracking:
        if (isTrackedAppActive(window)) {
            countInterval(NumberOfIntervalsForNotTracking, TrackingState::Tracking);
        }
        break;
    case TrackingState::Idle:
        break;
    }
}

bool shouldStartTracking(HWND /*window*/) {
    logLine("Brisk : shouldStartTracking");
    const HWND foreground = GetForegroundWindow();
    logLine("Brisk : HWND = ", std::hex, reinterpret_cast<std::uintptr_t>(foreground));
    if (!foreground) {
        return false;
    }
    const DWORD processId = getWindowProcess(foreground);
    logLine("Brisk : PID = ", std::hex, processId);
    if (processId != trackingContext.processId) {
        logLine("Brisk : expected PID ", std::hex, trackingContext.processId, " instead of PID ", processId);
        return false;
    }
    const ProcessImage image = getProcessImage(processId);
    if (image.fileName.empty()) {
        logLine("Brisk : couldn't get file name by PID");
    }
    const FileProperties properties = getFileProperties(image.directory + "\\" + image.fileName);
    if (properties.companyName.empty()) {
        logLine("Brisk : couldn't get file properties for ", image.fileName);
    }
    if (!titleManager().isTitleSupported(properties.companyName, image.fileName, image.directory)) {
        logLine("Brisk : config for ", image.fileName, " was not found. Skip.");
        return false;
    }
    trackingContext.publisher = properties.companyName;
    {
        const std::lock_guard lock(executableNameMutex);
        trackingContext.executableName = image.fileName;
    }
    trackingContext.processHandle = OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, trackingContext.processId);
    if (!trackingContext.processHandle) {
        logLine("Brisk : OpenProcess failed. Can't track app.");
        return false;
    }
    return true;
}

bool isTrackedAppActive(HWND window) {
    const HWND foreground = GetForegroundWindow();
    DWORD exitCode = 0;
    if (!GetExitCodeProcess(trackingContext.processHandle, &exitCode)) {
        logLine("Brisk : failed to get tracked process exit code.");
        return false;
    }
    if (exitCode != STILL_ACTIVE) {
        logLine("Brisk : tracked process is closed. Skip tracking, waiting for BRISK_APP_FINISHED message.");
        KillTimer(window, kTrackingTimerId);
        // The closed value stays in the context; nothing uses it before the next reset but a late tick, whose check
        // fails.
        CloseHandle(trackingContext.processHandle);
        return false;
    }
    if (!IsWindow(foreground)) {
        return false;
    }
    if (getWindowProcess(foreground) != trackingContext.processId) {
        logLine("Brisk : foreground window doesn't belong to tracked process.");
        return false;
    }
    return true;
}

} // namespace brisk
