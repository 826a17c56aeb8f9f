#pragma once

#include "ServicesFixture.h"

#include "state/UserState.h"
#include "tracking/GameEnd.h"

namespace brisk::testing {

// A game that is being tracked, at its end: 120 samples at 40 frames per second, 60 Hz, a width to adjust.
class GameEndFixture : public ServicesFixture {
protected:
    GameEndFixture() {
        loadGame();
        playAt(40);
    }

    static void playAt(std::uint32_t averageFps) {
        trackingState = TrackingState::Tracking;
        trackingContext.processHandle = Desktop::kGameHandle;
        trackingContext.executableName = "game.exe";
        trackingContext.averageFps = averageFps;
        trackingContext.sampleCount = 120;
    }

    static void finish() { onAppFinished(Desktop::kServiceWindow, 5, 0x1F); }

    // A title that needs no lower resolution: its wanted setting is the upscaling.
    void loadLumaGame() {
        nlohmann::json title = textTitle("The Game", "game.exe", "game.ini");
        title["luma_version"] = 2;
        title["config_fields"] = nlohmann::json::parse(
            R"json([{"key": "(Upscaling=)(\\w+)()", "value": "On", "text": "LUMA Quality"}])json");
        loadTitles({title});
        writeFile(settings(), "Upscaling=Off\r\n");
    }

    void refuse(int times) {
        for (int i = 0; i < times; ++i) {
            incNumberOfToastsShown("game.exe");
        }
    }

    static Lines finishedLines(const std::string& average = "40", const std::string& samples = "120") {
        return endedLines("p1 = 5, p2 = 0x1f", average, samples) + nativeResolutionLines(kDisplay);
    }

    // The game is too slow and its width is to be adjusted.
    static Lines slowLines(const std::string& ratio = "0.666667") {
        return neededLines(ratio, {notOptimalLine("1920", "1280")});
    }

    static Lines judgedLines(const std::string& refusals = "0", const std::string& ratio = "0.666667") {
        return slowLines(ratio) + allowedLines(refusals);
    }

    static std::string offer() { return offerToast("The Game", enabledTano("1280x720", "The Game")); }

    // Finishes the game, which is offered, and forgets the lines.
    void finishWithOffer() {
        finish();
        ASSERT_THAT(toasts.shown(), ::testing::ElementsAre(offer()));
        log.take();
    }

    void press(unsigned button) {
        const auto result = toasts.control.press(1, button);
        EXPECT_EQ(result.handlers, 1u);
        EXPECT_EQ(result.result, S_OK);
    }
};

} // namespace brisk::testing
