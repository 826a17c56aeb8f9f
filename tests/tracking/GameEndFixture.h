#pragma once

#include "ServicesFixture.h"

#include "state/UserState.h"
#include "tracking/GameEnd.h"

namespace brisk::testing {

inline constexpr char kOfferTitle[] = "Orlan Software: Meridian Edition Suggested Game Settings";
inline constexpr char kAdjustmentsTitle[] = "Orlan Software: Meridian Edition Game Adjustments";
inline constexpr char kOfferSubtitle[] =
    "Recommendations are available for The Game to improve your gaming experience.";

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
        return {"Brisk : onAppFinished, p1 = 5, p2 = 0x1f", "Brisk : switch to IDLE",
                "Brisk : average fps = " + average + ", intervals = " + samples, "Brisk : native resolution: 1920x1080",
                "Brisk : aspect ratio: 0.5625"};
    }

    static Lines neededLines(const std::string& ratio = "0.666667") {
        return {"Brisk : FPS ratio to optimal is " + ratio, "Brisk : shouldShowToast",
                "Brisk : game setting '1920' is not optimal '1280'.",
                "Brisk : titleManager.isTitleNeedToBeOptimized = 1"};
    }

    static Lines allowedLines(const std::string& shown = "0") {
        return {"Brisk : areToastsAllowed = 1", "Brisk : getNumberOfToastsShown = " + shown};
    }

    static std::string offer(const std::string& detail = "Enabled TANO for The Game using 1280x720.") {
        return toastDocument(kOfferTitle, kOfferSubtitle, "<text>" + detail + "</text>",
                             {"Configure Settings", "Not Now", "Don't ask again"});
    }

    static std::string errorToast() {
        return plainToast(kAdjustmentsTitle,
                          "Orlan Software: Meridian Edition has encountered some errors while adjusting game settings. "
                          "This may be resolved by starting and stopping the game, or by changing graphics settings.");
    }

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
