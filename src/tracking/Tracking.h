#pragma once

#include <cstdint>
#include <string>

#include <windows.h>

namespace brisk {

// Follows one game at a time from the host's app-started message to its app-finished message (GameEnd.h). Window
// thread, unless said otherwise.

enum class TrackingState : std::uint32_t { Idle = 0, WaitingApp = 1, AppWarming = 2, Tracking = 3, NotTracking = 4 };

// The state as the log names it; "UNKNOWN" for a number that is no state.
std::string getStateName(TrackingState state);

// The game being tracked. It keeps its values after the game's end, for the buttons of the offer.
struct TrackingContext {
    std::uint32_t gameId = 0; // not read, as the publisher: with them a dump of the process tells which game it was
    std::uint32_t processId = 0;
    HANDLE processHandle = nullptr; // closed only if found ended: docs/decisions/kept-behaviour.md
    std::uint32_t averageFps = 0;
    std::uint64_t sampleCount = 0;     // accepted samples
    std::uint64_t intervalCounter = 0; // ticks counted in the current state
    std::uint64_t fpsSum = 0;          // of the accepted samples
    std::string publisher;
    std::string executableName; // file name; other threads read it through getTrackedExecutableName
};

extern TrackingState trackingState;
extern TrackingContext& trackingContext;

// The tracking timer of the hidden window.
inline constexpr UINT_PTR kTrackingTimerId = 0;

void switchToState(TrackingState state);
void resetTrackingContext();

// The executable name of the context. Any thread.
std::string getTrackedExecutableName();

// Adds the frame rate to the context's running average if it lies between 15 and 300.
void addFpsSample(float fps);

// The app-started message: wParam is the game id, lParam the process id.
void onAppStarted(HWND window, WPARAM wParam, LPARAM lParam);

// One tick of the timer.
void onTrackingTimer(HWND window);

// Whether the announced game is in the foreground and everything needed to track it is in hand. The window is not used.
bool shouldStartTracking(HWND window);

// Whether the tracked process runs and owns the foreground window. Stops the timer when the process has ended.
bool isTrackedAppActive(HWND window);

} // namespace brisk
