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

    Lines announcedLines(const FakeGame& game) const { return acceptedLines(1001, toHexadecimal(game.processId())); }

    static Lines lookedAtLines(const FakeGame& game) {
        return {"Brisk : shouldStartTracking",
                "Brisk : HWND = " + toHexadecimal(reinterpret_cast<std::uintptr_t>(game.window())),
                "Brisk : PID = " + toHexadecimal(game.processId())};
    }

    Lines checkedLines(const std::string& publisher) const {
        return {"Brisk : publisher: '" + publisher + "', binary name: 'StarlitHarbour.exe'.",
                "Brisk : checking path '" + toNarrow(settings()) + "'."};
    }

    Lines foundLines(const FakeGame& game) const {
        return lookedAtLines(game) + checkedLines("Brackwater Games") +
               Lines{"Brisk : config found.", "Brisk : switch to APP_WARMING"};
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
    static Lines finishedLines(const std::string& fps, const Lines& nativeLines = {"Brisk : get current display info."},
                               const std::string& samples = "4") {
        return endedLines("p1 = 5, p2 = 0x1f", fps, samples) + Lines{"Brisk : get current display info."} +
               nativeLines + resolutionLines(display());
    }

    // The settings are to be adjusted.
    static Lines slowLines(const std::string& ratio = "0.666667") {
        return neededLines(ratio, {notOptimalLine("768", "600")});
    }

    static Lines judgedLines(const std::string& refusals, const std::string& ratio = "0.666667") {
        return slowLines(ratio) + allowedLines(refusals);
    }

    static Lines adjustedLines() { return configuredLines("Starlit Harbour", "StarlitHarbour.exe"); }

    static std::string offer() { return offerToast("Starlit Harbour", enabledTano("800x600", "Starlit Harbour")); }

    // The lines of this game, after the start's.
    Lines log() const { return service.logFrom(linesBefore); }

    Service service;
    std::filesystem::path program;
    std::size_t linesBefore = 0;
};

} // namespace brisk::testing
