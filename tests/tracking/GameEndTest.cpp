// The end of a game: its judgement and the offer.
#include "GameEndFixture.h"

#include "base/RunTimeParameters.h"
#include "toast/ToastManager.h"

namespace brisk {
namespace {

using testing::Desktop;
using testing::Lines;
using testing::operator+;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;

class GameEndTest : public testing::GameEndFixture {};

TEST_F(GameEndTest, SlowGameIsOfferedWithEveryLineInOrder) {
    finish();
    EXPECT_THAT(log.take(), ElementsAreArray(finishedLines() + judgedLines()));
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
        KillTimerFault.intercept([&](HWND window, UINT_PTR id) -> BOOL {
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
    EXPECT_EQ(KillTimerFault.calls(), 4u);
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
    EXPECT_EQ(toasts.shown().at(1), testing::noOptimalConfigurationToast());
    EXPECT_THAT(toasts.events(), ElementsAre("Show 1", "Hide 1", "Show 2"));
}

TEST_F(GameEndTest, LumaTitleNeedsNoOptimalResolution) {
    loadLumaGame();
    gfx->optimal = {};
    finish();
    EXPECT_THAT(log.take(), ElementsAreArray(finishedLines() +
                                             testing::neededLines("0.666667", {testing::notOptimalLine("Off", "On")}) +
                                             testing::allowedLines("0")));
    EXPECT_THAT(toasts.shown(),
                ElementsAre(testing::offerToast("The Game", testing::enabledLuma("LUMA Quality", "The Game"))));
}

TEST_F(GameEndTest, ResolutionsOfTheDatabaseAreThoseOfThisEvaluation) {
    nlohmann::json title = textTitle("The Game", "game.exe", "game.ini");
    title["config_fields"] = resolutionFields();
    loadTitles({title});
    testing::writeFile(settings(), "A=1\r\nB=1\r\nC=1\r\nD=1\r\n");
    finish();
    press(0);
    EXPECT_EQ(testing::readFile(settings()), "A=1920\r\nB=1080\r\nC=1280\r\nD=720\r\n");
    // Where an evaluation stops, what it had not come to yet stays as it was.
    const auto patched = [this] {
        EXPECT_TRUE(patchTitle("game.exe"));
        return testing::readFile(settings());
    };
    playAt(40);
    gfx->native = {2560, 1440, 32, 60}; // not the current mode
    finish();
    EXPECT_EQ(patched(), "A=1920\r\nB=1080\r\nC=1280\r\nD=720\r\n");
    playAt(40);
    gfx->current = gfx->native;
    gfx->optimal = {};
    finish();
    EXPECT_EQ(patched(), "A=2560\r\nB=1440\r\nC=1280\r\nD=720\r\n");
    playAt(40);
    gfx->optimal = {1600, 900, 0, 0};
    trackingContext.sampleCount = 0;
    finish();
    EXPECT_EQ(patched(), "A=2560\r\nB=1440\r\nC=1600\r\nD=900\r\n");
}

TEST_F(GameEndTest, LumaTitleWithoutAnOptimalResolutionSetsOneOfZero) {
    nlohmann::json luma = textTitle("Luma", "luma.exe", "luma.ini");
    luma["luma_version"] = 1;
    nlohmann::json title = textTitle("The Game", "game.exe", "game.ini");
    title["config_fields"][0]["value"] = 7; // wanted while no resolution is set
    loadTitles({title, luma});
    ASSERT_TRUE(titleManager().isTitleSupported("", "game.exe", ""));
    trackingContext.executableName = "luma.exe";
    gfx->optimal = {};
    finish();
    EXPECT_TRUE(patchTitle("game.exe"));
    EXPECT_EQ(testing::readFile(settings()), "Width=0\r\n");
}

TEST_F(GameEndTest, NoStopButThatOfTheMissingResolutionTouchesTheToasts) {
    showToast("Old", "", "", {});
    gfx->current.height = 1079;
    finish();
    gfx->current = gfx->native;
    playAt(40);
    trackingContext.sampleCount = 119;
    finish();
    playAt(51);
    finish();
    finish(); // in idle
    playAt(40);
    refuse(3);
    finish();
    playAt(40);
    disallowToasts();
    finish();
    playAt(40);
    testing::writeFile(settings(), "Width=1280\r\n");
    finish();
    EXPECT_THAT(toasts.events(), ElementsAre("Show 1"));
}

TEST_F(GameEndTest, TooFewSamplesAreInsufficientAndJustEnoughAreNot) {
    trackingContext.sampleCount = 119;
    finish();
    EXPECT_THAT(log.take(), ElementsAreArray(finishedLines("40", "119") + Lines{testing::insufficientLine("119")}));
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
    EXPECT_THAT(log.take(), ElementsAreArray(finishedLines("849") + judgedLines("0", "0.849")));
    EXPECT_THAT(toasts.shown(), ElementsAre(offer()));
}

TEST_F(GameEndTest, FiftyFramesOnA60HzDisplayAreTooFew) {
    playAt(50);
    finish();
    EXPECT_THAT(log.take(), ElementsAreArray(finishedLines("50") + judgedLines("0", "0.833333")));
    EXPECT_THAT(toasts.shown(), ElementsAre(offer()));
}

TEST_F(GameEndTest, UnknownRefreshRateGivesNoOffer) {
    gfx->native.refreshRate = 0;
    finish();
    EXPECT_THAT(log.take(), ElementsAreArray(finishedLines() + Lines{"Brisk : FPS ratio to optimal is inf"}));
    playAt(0);
    finish();
    const Lines lines = log.take();
    ASSERT_EQ(lines.size(), 6u);
    EXPECT_THAT(lines.back(), MatchesRegex("Brisk : FPS ratio to optimal is -?nan.*"));
    EXPECT_THAT(toasts.events(), IsEmpty());
}

TEST_F(GameEndTest, GameWithItsBestSettingsIsNotOffered) {
    testing::writeFile(settings(), "Width=1280\r\n");
    finish();
    EXPECT_THAT(log.take(), ElementsAreArray(finishedLines() + testing::neededLines("0.666667", {})));
    EXPECT_THAT(toasts.events(), IsEmpty());
}

TEST_F(GameEndTest, NothingIsOfferedAfterDontAskAgain) {
    disallowToasts();
    finish();
    EXPECT_THAT(log.take(), ElementsAreArray(finishedLines() + slowLines() + Lines{"Brisk : areToastsAllowed = 0"}));
    EXPECT_THAT(toasts.events(), IsEmpty());
}

TEST_F(GameEndTest, TwoRefusalsStillLetTheOfferBeMadeAndThreeDoNot) {
    refuse(2);
    finish();
    EXPECT_THAT(log.take(), ElementsAreArray(finishedLines() + judgedLines("2")));
    EXPECT_THAT(toasts.shown(), ElementsAre(offer()));
    for (const std::string shown : {"3", "4"}) {
        refuse(1);
        playAt(40);
        finish();
        EXPECT_THAT(log.take(), ElementsAreArray(finishedLines() + judgedLines(shown)));
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
    RegCreateKeyExAFault.fail(ERROR_ACCESS_DENIED);
    finish();
    EXPECT_THAT(log.take(), ElementsAreArray(finishedLines() + slowLines() +
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

TEST_F(GameEndTest, ToastsAreClearedOnlyWhenEverythingIsDecided) {
    ToastManager::instance()->cleanup();
    GetProcAddressFault.fail(nullptr);
    EXPECT_THROW(finish(), std::runtime_error);
    EXPECT_THAT(log.take(), ElementsAreArray(finishedLines() + judgedLines()));
    EXPECT_EQ(trackingState, TrackingState::Idle);
    playAt(40);
    gfx->optimal = {};
    EXPECT_THROW(finish(), std::runtime_error);
    EXPECT_THAT(log.take(),
                ElementsAreArray(finishedLines() + Lines{"Brisk : couldn't get optimal display resolution. Skip."}));
}

TEST_F(GameEndTest, OfferThatCannotBeShownIsOnlyLogged) {
    toasts.control.setFailures("Show=0x80070005");
    finish();
    EXPECT_THAT(log.take(), ElementsAreArray(finishedLines() + judgedLines() +
                                             Lines{"Brisk : ToastManager: Can't show notification"}));
}

} // namespace
} // namespace brisk
