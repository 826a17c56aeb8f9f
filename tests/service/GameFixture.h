#pragma once

#include "service/ServiceFixture.h"
#include "support/fakegame/FakeGame.h"

#include <sstream>

namespace brisk::testing {

// One installed game whose title the database knows as 1001. Short intervals: warming 2, tracking 3, pausing 1,
// 4 samples to be valid.
class GameFixture : public ServiceFixture {
protected:
    static constexpr char kSettings[] = "[Display]\r\nWidth=1024\r\nHeight=768\r\n[Quality]\r\nUpscaling=Off\r\n";
    static constexpr char kAdjustedSettings[] = "[Display]\r\nWidth=800\r\nHeight=600\r\n[Quality]\r\nUpscaling=On\r\n";

    GameFixture()
        : service(R"json([{
                "id": 1001,
                "config_type": "txt",
                "title_name": "Starlit Harbour",
                "publisher": "Brackwater Games",
                "binary_name": "StarlitHarbour.exe",
                "config_locations": [ "%APPDIR%\\Settings.ini" ],
                "config_fields": [
                  { "key": "(Width=)(\\d+)()", "meta": "width", "value": 0 },
                  { "key": "(Height=)(\\d+)()", "meta": "height", "value": 0 },
                  { "key": "(Upscaling=)(\\w+)()", "value": "On" } ] }])json"),
          program(FakeGame::install(FakeGame::executable(), machine / "Game" / "StarlitHarbour.exe")) {
        writeFile(settings(), kSettings);
    }

    void start(const std::string& fps = "-fps 40") {
        service.startAndWait("-nw 2 -nt 3 -nn 1 -nv 4 " + fps);
        linesBefore = service.log().size();
    }

    // The game's messages and ticks, handled in one go: found, warmed up, two measuring periods of three and one tick.
    void play(const FakeGame& game) {
        service.suspend();
        announce(game);
        service.tick(1 + 2 + 3 + 1 + 1);
        service.post(BRISK_APP_FINISHED, 5, 0x1F);
        service.resume();
        service.waitForLog("Brisk : onAppFinished, p1 = 5, p2 = 0x1f");
    }

    void announce(const FakeGame& game) {
        service.post(BRISK_APP_STARTED, 1001, static_cast<LPARAM>(game.processId()));
    }

    // No real tick falls in between.
    void announceWithTicks(const FakeGame& game, unsigned ticks) {
        service.suspend();
        announce(game);
        service.tick(ticks);
        service.resume();
    }

    // As the log writes ids and handles.
    static std::string toHexadecimal(std::uintptr_t number) {
        std::ostringstream text;
        text << std::hex << std::showbase << number;
        return text.str();
    }

    std::filesystem::path settings() const { return machine / "Game" / "Settings.ini"; }

    Lines announcedLines(const FakeGame& game) const {
        const std::string id = toHexadecimal(game.processId());
        return {"Brisk : onAppStarted, p1 = 1001, p2 = " + id, "Brisk : waiting for activation, GameID 1001, PID " + id,
                "Brisk : switch to WAITING_APP"};
    }

    Lines foundLines(const FakeGame& game) const {
        return {"Brisk : shouldStartTracking",
                "Brisk : HWND = " + toHexadecimal(reinterpret_cast<std::uintptr_t>(game.window())),
                "Brisk : PID = " + toHexadecimal(game.processId()),
                "Brisk : publisher: 'Brackwater Games', binary name: 'StarlitHarbour.exe'.",
                "Brisk : checking path '" + toNarrow(settings()) + "'.",
                "Brisk : config found.",
                "Brisk : switch to APP_WARMING"};
    }

    static Lines measuredLines(const std::string& fps) { return measuredLines({fps, fps, fps, fps}); }

    // Four samples.
    static Lines measuredLines(const std::vector<std::string>& fps) {
        const std::string sample = "Brisk : FPS = ";
        return {"Brisk : switch to TRACKING",
                sample + fps[0],
                sample + fps[1],
                sample + fps[2],
                "Brisk : switch to NOT_TRACKING",
                "Brisk : switch to TRACKING",
                sample + fps[3]};
    }

    // nativeLines: what the question for the native mode logs.
    static Lines finishedLines(const std::string& fps,
                               const Lines& nativeLines = {"Brisk : get current display info."}) {
        const Lines begin{"Brisk : onAppFinished, p1 = 5, p2 = 0x1f", "Brisk : switch to IDLE",
                          "Brisk : average fps = " + fps + ", intervals = 4", "Brisk : get current display info."};
        return begin + nativeLines +
               Lines{"Brisk : native resolution: 1024x768", "Brisk : aspect ratio: 0.75",
                     "Brisk : get available display info modes.", displayModesLine(),
                     "Brisk : optimal resolution: 800x600"};
    }

    static Lines judgedLines(const std::string& shown, const std::string& ratio = "0.666667") {
        return {"Brisk : FPS ratio to optimal is " + ratio,
                "Brisk : shouldShowToast",
                "Brisk : game setting '768' is not optimal '600'.",
                "Brisk : titleManager.isTitleNeedToBeOptimized = 1",
                "Brisk : areToastsAllowed = 1",
                "Brisk : getNumberOfToastsShown = " + shown};
    }

    static std::string offer() {
        return toastDocument("Orlan Software: Meridian Edition Suggested Game Settings",
                             "Recommendations are available for Starlit Harbour to improve your gaming experience.",
                             "<text>Enabled TANO for Starlit Harbour using 800x600.</text>",
                             {"Configure Settings", "Not Now", "Don't ask again"});
    }

    // The lines of this game, after the start's.
    Lines log() const { return service.logFrom(linesBefore); }

    Service service;
    std::filesystem::path program;
    std::size_t linesBefore = 0;
};

} // namespace brisk::testing
