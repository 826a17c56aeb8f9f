// The log's lines that tests of several folders expect, told a second time: nothing here but the version is taken from
// the product.
#pragma once

#include "base/Version.h"
#include "support/TextFiles.h"

namespace brisk::testing {

inline std::string startedLine() {
    return std::string("Brisk ") + kVersion + " : started";
}

// The search for graphics information where the vendor's library does not start.
inline Lines graphicsLines() {
    return {"Brisk : initializing GfxInfoKestrel.", "Brisk : initializing Kestrel.",
            "Brisk : failed to initialize Kestrel.", "Brisk : initializing GfxInfoGen.",
            "Brisk : get current display info."};
}

// What a start finds, in the order of its lines.
struct StartFindings {
    Lines database{"Brisk : titles DB processed."};
    std::string registry{"Brisk : access to the Windows Registry granted."};
    Lines graphics = graphicsLines();
};

// From the started line to the message loop; by default all goes well.
inline Lines startLines(const StartFindings& findings = {}) {
    return Lines{startedLine()} + findings.database + Lines{findings.registry} + findings.graphics;
}

// The display, and the lower resolution that is found for it.
struct Display {
    std::string native;
    std::string aspectRatio;
    unsigned modes;
    std::string optimal;
};

inline Lines nativeResolutionLines(const Display& display) {
    return {"Brisk : native resolution: " + display.native, "Brisk : aspect ratio: " + display.aspectRatio};
}

inline Lines resolutionLines(const Display& display) {
    return nativeResolutionLines(display) + Lines{"Brisk : get available display info modes.",
                                                  "Brisk : found " + std::to_string(display.modes) + " display modes.",
                                                  "Brisk : optimal resolution: " + display.optimal};
}

// A bulk pass up to the first title's own line.
inline Lines bulkPassLines(const Display& display) {
    return Lines{"Brisk : onMassivePatching", "Brisk : doMassivePatching", "Brisk : get current display info."} +
           resolutionLines(display);
}

// A game that is waited for; the process id as the log writes it.
inline Lines acceptedLines(unsigned gameId, const std::string& processId) {
    const std::string id = std::to_string(gameId);
    return {"Brisk : onAppStarted, p1 = " + id + ", p2 = " + processId,
            "Brisk : waiting for activation, GameID " + id + ", PID " + processId, "Brisk : switch to WAITING_APP"};
}

// A game's end up to its judgement; the parameters are those of the message.
inline Lines endedLines(const std::string& parameters, const std::string& averageFps, const std::string& samples) {
    return {"Brisk : onAppFinished, " + parameters, "Brisk : switch to IDLE",
            "Brisk : average fps = " + averageFps + ", intervals = " + samples};
}

inline std::string insufficientLine(const std::string& samples) {
    return "Brisk : insufficient data collected (" + samples + " intervals).";
}

// A judgement as far as the settings: too slow a game, and the line of each setting to adjust.
inline Lines neededLines(const std::string& ratio, const Lines& settings) {
    return Lines{"Brisk : FPS ratio to optimal is " + ratio, "Brisk : shouldShowToast"} + settings +
           Lines{settings.empty() ? "Brisk : titleManager.isTitleNeedToBeOptimized = 0"
                                  : "Brisk : titleManager.isTitleNeedToBeOptimized = 1"};
}

inline std::string notOptimalLine(const std::string& found, const std::string& wanted) {
    return "Brisk : game setting '" + found + "' is not optimal '" + wanted + "'.";
}

// A judgement's last lines; how often the offer was refused.
inline Lines allowedLines(const std::string& refusals) {
    return {"Brisk : areToastsAllowed = 1", "Brisk : getNumberOfToastsShown = " + refusals};
}

// A patch that succeeds, and the press that asks for it.
inline Lines patchedLines(const std::string& title, const std::string& executable) {
    return {"Brisk : '" + title + "' optimized.", "Brisk : patch marker set for " + executable};
}
inline Lines configuredLines(const std::string& title, const std::string& executable) {
    return Lines{"Brisk : Toast : Configure Settings"} + patchedLines(title, executable);
}

inline Lines notNowLines(const std::string& executable) {
    return {"Brisk : Toast : Not now", "Brisk : increment toasts counter for " + executable};
}

inline Lines dontAskAgainLines() {
    return {"Brisk : Toast : Don't ask again", "Brisk : toasts disabled"};
}

// A reset that finds no refusal of all offers; the first line alone when it finds everything.
inline Lines resetLines() {
    return {"Brisk : onResetPromptCounters", "Brisk : resetToastsAllowed : RegDeleteValue failed. Error 2.",
            "Brisk : resetToastsAllowed couldn't delete key"};
}
// The same when there are no counts either.
inline Lines emptyResetLines() {
    return resetLines() + Lines{"Brisk : resetToastsShown : RegOpenKeyEx failed. Error 2.",
                                "Brisk : resetToastsShown couldn't delete tree"};
}

} // namespace brisk::testing
