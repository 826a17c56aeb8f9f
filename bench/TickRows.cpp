#include "base/Log.h"
#include "bench/Measurement.h"
#include "bench/Rows.h"
#include "support/TemporaryFolder.h"
#include "support/TextFiles.h"
#include "tracking/FakeGfxInfo.h"
#include "tracking/Services.h"
#include "tracking/Tracking.h"

#include <fstream>
#include <memory>
#include <ostream>
#include <sstream>
#include <stdexcept>

#ifndef _WIN32
#include "simulation/Desktop.h"
#include "simulation/Processes.h"
#endif

// What a second costs while a game is measured.

namespace brisk::bench {

namespace {

// This process plays the game, and owns the foreground window.
void startGame() {
#ifdef _WIN32
    const HWND window =
        CreateWindowExA(0, "STATIC", "Game", WS_POPUP | WS_VISIBLE, 0, 0, 100, 100, nullptr, nullptr, nullptr, nullptr);
    SetForegroundWindow(window);
    trackingContext.processId = GetCurrentProcessId();
#else
    trackingContext.processId = 500;
    host::processes().byId[trackingContext.processId] = {R"(C:\Games\game.exe)", STILL_ACTIVE, false};
    host::desktop().foreground = host::desktop().addWindow("Game", trackingContext.processId);
#endif
    trackingContext.processHandle = OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, trackingContext.processId);
    if (!isTrackedAppActive(nullptr)) {
        throw std::runtime_error("the game is not in the foreground");
    }
}

void tick() {
    trackingState = TrackingState::Tracking;
    trackingContext.intervalCounter = 0;
    onTrackingTimer(nullptr);
}

// The calls that a tick cannot do without, and its line.
template <class Commit>
void tickBarely(const Commit& commit) {
    static std::ostringstream line;
    const HWND foreground = GetForegroundWindow();
    DWORD exitCode = 0;
    DWORD processId = 0;
    GetExitCodeProcess(trackingContext.processHandle, &exitCode);
    if (IsWindow(foreground) && GetWindowThreadProcessId(foreground, &processId) != 0) {
        line << "Brisk : FPS = " << 60.0F << std::endl;
        commit(line.str());
        line.str({});
    }
}

} // namespace

void printTickRows() {
    startGame();
    const auto gfx = std::make_shared<testing::FakeGfxInfo>();
    gfx->meanwhile = [&questions = gfx->questions] { questions.clear(); };
    gfxInfo = gfx;
    std::string last;
    const auto keep = [&last](const std::string& line) { last = line; };
    processLog.setDestination(keep);
    compare("a tick", tick, "the same calls and a line", [&] { tickBarely(keep); }, {Bar::Kind::AtMost, 2});

    const testing::TemporaryFolder folder;
    processLog.setDestination(nullptr);
    processLog.setFilePath(folder.narrow() + "\\brisk.log");
    const auto append = [file = folder / "other.log"](const std::string& line) {
        std::ofstream(file, std::ios::out | std::ios::app) << line;
    };
    compare("a tick with a log", tick, "the same calls and a line in a file", [&] { tickBarely(append); },
            {Bar::Kind::AtMost, 2});
    processLog.setFilePath({});
    processLog.setDestination([](const std::string& /*line*/) {});
    CloseHandle(trackingContext.processHandle);
    resetTrackingContext();
    trackingState = TrackingState::Idle;
    gfxInfo.reset();
}

} // namespace brisk::bench
