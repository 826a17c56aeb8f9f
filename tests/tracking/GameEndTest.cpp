// The end of a game: its judgement, the offer and the offer's buttons.
#include "tracking/GameEnd.h"

#include "ServicesFixture.h"

#include "app/RunTimeParameters.h"
#include "state/UserState.h"

namespace brisk {
namespace {

using testing::Desktop;
using testing::Lines;
using testing::operator+;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using testing::plainToast;
using testing::toastDocument;

constexpr char kOfferTitle[] = "Orlan Software: Meridian Edition Suggested Game Settings";
constexpr char kAdjustmentsTitle[] = "Orlan Software: Meridian Edition Game Adjustments";
constexpr char kOfferSubtitle[] = "Recommendations are available for The Game to improve your gaming experience.";

class GameEndTest : public testing::ServicesFixture {
protected:
    // A game of 120 samples at 40 frames per second, 60 Hz, a width to adjust.
    GameEndTest() {
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
        testing::writeFile(settings(), "Upscaling=Off\r\n");
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
        ASSERT_THAT(toasts.shown(), ElementsAre(offer()));
        log.take();
    }

    void press(unsigned button) {
        const auto result = toasts.control.press(1, button);
        EXPECT_EQ(result.handlers, 1u);
        EXPECT_EQ(result.result, S_OK);
    }
};

TEST_F(GameEndTest, SlowGameIsOfferedWithEveryLineInOrder) {
    finish();
    EXPECT_THAT(log.take(), ElementsAreArray(finishedLines() + neededLines() + allowedLines()));
    EXPECT_THAT(toasts.shown(), ElementsAre(offer()));
    EXPECT_THAT(gfx->questions, ElementsAre("current", "native", "optimal"));
    EXPECT_EQ(gfx->reference, (DisplayInfo{1920, 1080, 32, 60}));
    // The timer stopped; the process handle was dropped, not closed.
    EXPECT_THAT(desktop.takeCalls(), ElementsAre("KillTimer 0x40 0"));
    // Showing counts nothing and writes nothing.
    EXPECT_EQ(stateValue("ToastsShown", "game.exe"), -1);
    EXPECT_EQ(testing::readFile(settings()), "Width=1920\r\n");
}

TEST_F(GameEndTest, MessageInIdleLogsItsLineAndDoesNothingElse) {
    trackingState = TrackingState::Idle;
    onAppFinished(Desktop::kServiceWindow, static_cast<WPARAM>(-1), -1);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : onAppFinished, p1 = 18446744073709551615, p2 = 0xffffffffffffffff",
                                        "Brisk : got BRISK_APP_FINISHED message in IDLE state."));
    EXPECT_THAT(desktop.takeCalls(), IsEmpty());
    EXPECT_THAT(gfx->questions, IsEmpty());
    EXPECT_THAT(toasts.events(), IsEmpty());
}

TEST_F(GameEndTest, EveryOtherStateStopsTheTimerFirstAndEndsInIdle) {
    for (std::uint32_t state = 1; state <= 4; ++state) {
        trackingState = static_cast<TrackingState>(state);
        Lines before;
        faults::killTimer.intercept([&](HWND window, UINT_PTR id) -> BOOL {
            EXPECT_EQ(window, Desktop::kServiceWindow);
            EXPECT_EQ(id, 0u);
            before = log.take();
            return TRUE;
        });
        finish();
        EXPECT_THAT(before, ElementsAre("Brisk : onAppFinished, p1 = 5, p2 = 0x1f"));
        EXPECT_EQ(log.take().at(0), "Brisk : switch to IDLE");
        EXPECT_EQ(trackingState, TrackingState::Idle);
    }
    EXPECT_EQ(faults::killTimer.calls(), 4u);
}

TEST_F(GameEndTest, ContextKeepsItsValuesUntilTheNextGameIsAccepted) {
    finish();
    EXPECT_EQ(trackingContext.averageFps, 40u);
    EXPECT_EQ(trackingContext.sampleCount, 120u);
    EXPECT_EQ(getTrackedExecutableName(), "game.exe");
    onAppStarted(Desktop::kServiceWindow, 1002, 1);
    EXPECT_EQ(getTrackedExecutableName(), "game.exe");
    onAppStarted(Desktop::kServiceWindow, 1001, 1);
    EXPECT_EQ(getTrackedExecutableName(), "");
    EXPECT_EQ(trackingContext.sampleCount, 0u);
}

TEST_F(GameEndTest, DisplayThatIsNotInItsNativeModeStopsTheEvaluation) {
    const DisplayInfo others[] = {{1280, 1080, 32, 60}, {1920, 1079, 32, 60}, {1280, 720, 32, 60}};
    for (const DisplayInfo& other : others) { // in width, in height only, in both
        playAt(40);
        gfx->current = other;
        finish();
        EXPECT_THAT(log.take(),
                    ElementsAreArray(finishedLines() + Lines{"Brisk : current display resolution is different to "
                                                             "native display resolution. Skip."}));
    }
    EXPECT_THAT(gfx->questions, ElementsAre("current", "native", "current", "native", "current", "native"));
    EXPECT_THAT(toasts.events(), IsEmpty());
}

TEST_F(GameEndTest, DepthAndRefreshRateOfTheCurrentModeDoNotMatter) {
    gfx->current = {1920, 1080, 16, 50};
    finish();
    EXPECT_THAT(toasts.shown(), ElementsAre(offer()));
}

TEST_F(GameEndTest, MissingOptimalResolutionIsToldInAToastOfItsOwn) {
    showToast("Old", "", "", {});
    trackingContext.sampleCount = 0; // not asked for any more
    gfx->optimal = {0, 720, 0, 0};
    finish();
    EXPECT_THAT(log.take(), ElementsAreArray(finishedLines("40", "0") +
                                             Lines{"Brisk : couldn't get optimal display resolution. Skip."}));
    EXPECT_EQ(toasts.shown().at(1), plainToast(kAdjustmentsTitle, "Game adjustments have not been applied due to an "
                                                                  "unexpected issue while obtaining the optimal "
                                                                  "configuration."));
    EXPECT_THAT(toasts.events(), ElementsAre("Show 1", "Hide 1", "Show 2"));
}

TEST_F(GameEndTest, LumaTitleNeedsNoOptimalResolution) {
    loadLumaGame();
    gfx->optimal = {};
    finish();
    EXPECT_THAT(log.take(),
                ElementsAreArray(finishedLines() +
                                 Lines{"Brisk : FPS ratio to optimal is 0.666667", "Brisk : shouldShowToast",
                                       "Brisk : game setting 'Off' is not optimal 'On'.",
                                       "Brisk : titleManager.isTitleNeedToBeOptimized = 1"} +
                                 allowedLines()));
    EXPECT_THAT(toasts.shown(), ElementsAre(offer("Enabled LUMA for The Game using LUMA Quality.")));
}

TEST_F(GameEndTest, ResolutionsOfTheDatabaseAreThoseOfThisEvaluation) {
    nlohmann::json title = textTitle("The Game", "game.exe", "game.ini");
    title["config_fields"] = nlohmann::json::parse(R"json([
        {"key": "(A=)(\\d+)()", "meta": "native_width", "value": 0},
        {"key": "(B=)(\\d+)()", "meta": "native_height", "value": 0},
        {"key": "(C=)(\\d+)()", "meta": "width", "value": 0},
        {"key": "(D=)(\\d+)()", "meta": "height", "value": 0}])json");
    loadTitles({title});
    testing::writeFile(settings(), "A=1\r\nB=1\r\nC=1\r\nD=1\r\n");
    finish();
    press(0);
    EXPECT_EQ(testing::readFile(settings()), "A=1920\r\nB=1080\r\nC=1280\r\nD=720\r\n");
}

TEST_F(GameEndTest, TooFewSamplesAreInsufficientAndJustEnoughAreNot) {
    trackingContext.sampleCount = 119;
    finish();
    EXPECT_THAT(log.take(), ElementsAreArray(finishedLines("40", "119") +
                                             Lines{"Brisk : insufficient data collected (119 intervals)."}));
    EXPECT_THAT(toasts.events(), IsEmpty());
    NumberOfTrackingIntervalsToBeValid = 119;
    trackingState = TrackingState::WaitingApp;
    finish();
    EXPECT_THAT(toasts.shown(), ElementsAre(offer()));
}

TEST_F(GameEndTest, RatioOfExactly085GivesNoOfferAndOneOf0849Does) {
    playAt(51);
    finish();
    EXPECT_THAT(log.take(), ElementsAreArray(finishedLines("51") + Lines{"Brisk : FPS ratio to optimal is 0.85"}));
    gfx->native.refreshRate = 1000;
    playAt(850);
    finish();
    EXPECT_THAT(log.take(), ElementsAreArray(finishedLines("850") + Lines{"Brisk : FPS ratio to optimal is 0.85"}));
    EXPECT_THAT(toasts.events(), IsEmpty());
    playAt(849);
    finish();
    EXPECT_THAT(log.take(), ElementsAreArray(finishedLines("849") + neededLines("0.849") + allowedLines()));
    EXPECT_THAT(toasts.shown(), ElementsAre(offer()));
}

TEST_F(GameEndTest, FiftyFramesOnA60HzDisplayAreTooFew) {
    playAt(50);
    finish();
    EXPECT_THAT(log.take(), ElementsAreArray(finishedLines("50") + neededLines("0.833333") + allowedLines()));
    EXPECT_THAT(toasts.shown(), ElementsAre(offer()));
}

TEST_F(GameEndTest, UnknownRefreshRateGivesNoOffer) {
    gfx->native.refreshRate = 0;
    finish();
    EXPECT_THAT(log.take(), ElementsAreArray(finishedLines() + Lines{"Brisk : FPS ratio to optimal is inf"}));
    EXPECT_THAT(toasts.events(), IsEmpty());
}

TEST_F(GameEndTest, GameWithItsBestSettingsIsNotOffered) {
    testing::writeFile(settings(), "Width=1280\r\n");
    finish();
    EXPECT_THAT(
        log.take(),
        ElementsAreArray(finishedLines() + Lines{"Brisk : FPS ratio to optimal is 0.666667", "Brisk : shouldShowToast",
                                                 "Brisk : titleManager.isTitleNeedToBeOptimized = 0"}));
    EXPECT_THAT(toasts.events(), IsEmpty());
}

TEST_F(GameEndTest, NothingIsOfferedAfterDontAskAgain) {
    disallowToasts();
    finish();
    EXPECT_THAT(log.take(), ElementsAreArray(finishedLines() + neededLines() + Lines{"Brisk : areToastsAllowed = 0"}));
    EXPECT_THAT(toasts.events(), IsEmpty());
}

TEST_F(GameEndTest, TwoRefusalsStillLetTheOfferBeMadeAndThreeDoNot) {
    refuse(2);
    finish();
    EXPECT_THAT(log.take(), ElementsAreArray(finishedLines() + neededLines() + allowedLines("2")));
    EXPECT_THAT(toasts.shown(), ElementsAre(offer()));
    for (const std::string shown : {"3", "4"}) {
        refuse(1);
        playAt(40);
        finish();
        EXPECT_THAT(log.take(), ElementsAreArray(finishedLines() + neededLines() + allowedLines(shown)));
    }
    EXPECT_THAT(toasts.shown(), ElementsAre(offer()));
}

TEST_F(GameEndTest, CountOfRefusalsIsUnsigned) {
    incNumberOfToastsShown("game.exe");
    const DWORD count = 0xFFFFFFFF;
    RegSetKeyValueA(HKEY_CURRENT_USER, "SOFTWARE\\Orlan\\briskGCT\\ToastsShown", "game.exe", REG_DWORD, &count,
                    sizeof count);
    finish();
    EXPECT_EQ(log.take().back(), "Brisk : getNumberOfToastsShown = 4294967295");
    EXPECT_THAT(toasts.events(), IsEmpty());
}

TEST_F(GameEndTest, UserStateThatCannotBeReadCountsAsNoRefusal) {
    faults::regCreateKey.fail(ERROR_ACCESS_DENIED);
    finish();
    EXPECT_THAT(log.take(), ElementsAreArray(finishedLines() + neededLines() +
                                             Lines{"Brisk : areToastsAllowed : RegCreateKeyEx failed. Error 5.",
                                                   "Brisk : areToastsAllowed = 1",
                                                   "Brisk : getNumberOfToastsShown : RegCreateKeyEx failed. Error 5.",
                                                   "Brisk : getNumberOfToastsShown = 0"}));
    EXPECT_THAT(toasts.shown(), ElementsAre(offer()));
}

TEST_F(GameEndTest, OfferReplacesWhatIsStillShown) {
    showToast("Old", "", "", {});
    finish();
    EXPECT_THAT(toasts.events(), ElementsAre("Show 1", "Hide 1", "Show 2"));
}

TEST_F(GameEndTest, OfferThatCannotBeShownIsOnlyLogged) {
    toasts.control.setFailures("Show=0x80070005");
    finish();
    EXPECT_THAT(log.take(), ElementsAreArray(finishedLines() + neededLines() + allowedLines() +
                                             Lines{"Brisk : ToastManager: Can't show notification"}));
}

TEST_F(GameEndTest, ConfigureSettingsPatchesTheTitleAndSaysNothingMore) {
    finishWithOffer();
    press(0);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : Toast : Configure Settings", "Brisk : 'The Game' optimized.",
                                        "Brisk : patch marker set for game.exe"));
    EXPECT_EQ(testing::readFile(settings()), "Width=1280\r\n");
    EXPECT_EQ(stateValue("PatchedApps", "game.exe"), 1);
    EXPECT_THAT(toasts.events(), ElementsAre("Show 1", "Activated 1 0"));
}

TEST_F(GameEndTest, MarkerThatCannotBeSetDoesNotMakeThePatchFail) {
    finishWithOffer();
    faults::regSetValue.fail(ERROR_ACCESS_DENIED);
    press(0);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : Toast : Configure Settings", "Brisk : 'The Game' optimized.",
                                        "Brisk : setPatched : RegSetValueEx failed. Error 5.",
                                        "Brisk : failed to set patch marker for game.exe"));
    EXPECT_EQ(testing::readFile(settings()), "Width=1280\r\n");
    EXPECT_THAT(toasts.shown(), ElementsAre(offer()));
}

TEST_F(GameEndTest, PatchThatFailsIsToldInAToastAndSetsNoMarker) {
    finishWithOffer();
    std::filesystem::remove(settings());
    press(0);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : Toast : Configure Settings", "Brisk : failed to patch game.exe"));
    EXPECT_EQ(stateValue("PatchedApps", "game.exe"), -1);
    EXPECT_THAT(toasts.shown(), ElementsAre(offer(), errorToast()));
}

TEST_F(GameEndTest, NotNowCountsARefusalOfThisTitle) {
    finishWithOffer();
    press(1);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : Toast : Not now", "Brisk : increment toasts counter for game.exe"));
    EXPECT_EQ(stateValue("ToastsShown", "game.exe"), 1);
    EXPECT_EQ(testing::readFile(settings()), "Width=1920\r\n");
}

TEST_F(GameEndTest, RefusalThatCannotBeCountedIsLogged) {
    finishWithOffer();
    faults::regSetValue.fail(ERROR_ACCESS_DENIED);
    press(1);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : Toast : Not now",
                                        "Brisk : incNumberOfToastsShown : RegSetValueEx failed. Error 5.",
                                        "Brisk : failed to increment toasts counter for game.exe"));
}

TEST_F(GameEndTest, DontAskAgainDisablesAllOffers) {
    finishWithOffer();
    press(2);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : Toast : Don't ask again", "Brisk : toasts disabled"));
    EXPECT_EQ(stateValue("", "ToastsNotAllowed"), 1);
    EXPECT_EQ(stateValue("ToastsShown", "game.exe"), -1);
}

TEST_F(GameEndTest, OffersThatCannotBeDisabledAreLogged) {
    finishWithOffer();
    faults::regCreateKey.fail(ERROR_ACCESS_DENIED);
    press(2);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : Toast : Don't ask again",
                                        "Brisk : disallowToasts : RegCreateKeyEx failed. Error 5.",
                                        "Brisk : failed to disable toasts"));
}

TEST_F(GameEndTest, DismissedOfferCountsNothing) {
    finishWithOffer();
    for (const unsigned reason : {0u, 2u}) {
        toasts.control.dismiss(1, reason);
    }
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(stateValue("ToastsShown", "game.exe"), -1);
}

TEST_F(GameEndTest, ButtonsConcernTheTitleOfTheContextEvenAfterItWasReset) {
    finish();
    resetTrackingContext();
    log.take();
    configureSettings();
    notNow();
    EXPECT_THAT(log.take(), ElementsAre("Brisk : Toast : Configure Settings", "Brisk : failed to patch ",
                                        "Brisk : Toast : Not now", "Brisk : increment toasts counter for "));
    EXPECT_THAT(toasts.shown(), ElementsAre(offer(), errorToast()));
    EXPECT_EQ(stateValue("ToastsShown", ""), 1);
    EXPECT_EQ(testing::readFile(settings()), "Width=1920\r\n");
}

TEST_F(GameEndTest, BrokenPatternIsTheCallersExceptionAndAFailureCodeForTheNotificationSystem) {
    finishWithOffer();
    nlohmann::json title = textTitle("The Game", "game.exe", "game.ini");
    title["config_fields"] = nlohmann::json::parse(R"json([{"key": "(", "value": 1}])json");
    loadTitles({title});
    EXPECT_EQ(toasts.control.press(1, 0).result, E_FAIL);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : Toast : Configure Settings"));
    EXPECT_EQ(testing::readFile(settings()), "Width=1920\r\n");
    playAt(40);
    EXPECT_THROW(finish(), std::runtime_error);
    EXPECT_EQ(trackingState, TrackingState::Idle);
}

} // namespace
} // namespace brisk
