#pragma once

#include "gfx/IGfxInfo.h"

#include <string>

#include <windows.h>

namespace brisk {

// The end of a game: judges the measured frame rate and offers to adjust the game's settings.

// The app-finished message; the parameters are only logged. Window thread.
void onAppFinished(HWND window, WPARAM wParam, LPARAM lParam);

// The offer's buttons, each for the title in the tracking context. They run on the notification system's thread.
void configureSettings();
void notNow();
void dontAskAgain();

// Writes the title's wanted settings and its patch marker. A failed marker does not make the patch fail. Any thread.
bool patchTitle(const std::string& executableName);

// What the patch turns on, as toasts tell it: LUMA with its words, or TANO with the resolution. forTitle is put behind
// the name of the technique, and may be empty. Any thread.
std::string describeAdjustment(const std::string& executableName, const std::string& forTitle,
                               const DisplayInfo& optimal);

// The two lines that a judgement and a bulk pass begin with.
void logNativeResolution(const DisplayInfo& native);

} // namespace brisk
