// A button is pressed while the window's thread is in one of its handlers.
#include "ButtonThreadsFixture.h"

#include "BriskHost.h"
#include "app/TitleInfo.h"
#include "tracking/BulkPatching.h"

#include <atomic>

namespace brisk {
namespace {

using ::testing::Contains;
using testing::Desktop;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using testing::Gate;
using testing::kGracePeriod;
using testing::Lines;
using testing::operator+;

class PressDuringHandlersTest : public testing::ButtonThreadsFixture {};

TEST_F(PressDuringHandlersTest, PressDuringASecondGamesStartPatchesTheFirstGame) {
    showOffer();
    KillTimerFault.intercept([this](HWND, UINT_PTR) -> BOOL {
        EXPECT_EQ(toasts.control.press(1, kConfigure).result, S_OK);
        return TRUE;
    });
    onAppStarted(Desktop::kServiceWindow, 1001, Desktop::kOther);
    EXPECT_EQ(testing::readFile(settings()), "Width=1280\r\n");
    EXPECT_EQ(stateValue("PatchedApps", "game.exe"), 1);
    EXPECT_EQ(getTrackedExecutableName(), "");
}

TEST_F(PressDuringHandlersTest, PressUnderWayWhenTheNextGameStartsIsDoneForTheLastOne) {
    showOffer();
    trackingState = TrackingState::Idle;
    Gate gate;
    holdNextWrite(gate);
    std::future<Result> pressed = press(1, kNotNow);
    ASSERT_TRUE(gate.waitUntilReached());
    SetTimerFault.intercept([&](auto...) {
        gate.open();
        expectDone(pressed);
        return UINT_PTR{1};
    });
    onAppStarted(Desktop::kServiceWindow, 1001, Desktop::kOther);
    const Lines notNow = testing::notNowLines("game.exe");
    EXPECT_THAT(log.take(),
                ElementsAreArray(Lines{notNow[0]} + testing::acceptedLines(1001, "0x2b8") + Lines{notNow[1]}));
    EXPECT_EQ(stateValue("ToastsShown", "game.exe"), 1);
    EXPECT_EQ(getTrackedExecutableName(), "");
}

TEST_F(PressDuringHandlersTest, PressDuringATickIsDoneAtOnceInEveryState) {
    struct Tick {
        TrackingState state;
        Lines before;
        Lines after;
    };
    const Tick ticks[] = {
        {TrackingState::WaitingApp,
         {"Brisk : shouldStartTracking"},
         {"Brisk : HWND = 0x30a2", "Brisk : PID = 0x1f4", "Brisk : publisher: 'Studio', binary name: 'game.exe'.",
          "Brisk : checking path '" + toNarrow(settings()) + "'.", "Brisk : config found.",
          "Brisk : switch to APP_WARMING"}},
        {TrackingState::AppWarming, {}, {}},
        {TrackingState::Tracking, {}, {"Brisk : FPS = 60"}},
        {TrackingState::NotTracking, {}, {}}};
    GetForegroundWindowFault.intercept([this] {
        EXPECT_EQ(toasts.control.press(1, kNotNow).result, S_OK);
        return Desktop::kGameWindow;
    });
    for (const Tick& tick : ticks) {
        resetToastsShown();
        toasts.control.reset();
        showOffer();
        trackingState = tick.state;
        onTrackingTimer(Desktop::kServiceWindow);
        EXPECT_EQ(stateValue("ToastsShown", "game.exe"), 1);
        EXPECT_THAT(log.take(),
                    ElementsAreArray(tick.before +
                                     Lines{"Brisk : Toast : Not now", "Brisk : increment toasts counter for game.exe"} +
                                     tick.after));
    }
}

TEST_F(PressDuringHandlersTest, PressWhileTheConfigurationIsLookedForWaitsAndThenPatches) {
    showOffer();
    trackingState = TrackingState::WaitingApp;
    std::future<Result> pressed;
    bool waited = false;
    GetFileAttributesWFault.intercept([&](const wchar_t* file) {
        if (!pressed.valid()) {
            pressed = press(1, kConfigure);
            waited = !isReady(pressed, kGracePeriod);
        }
        return GetFileAttributesWFault.real(file);
    });
    onTrackingTimer(Desktop::kServiceWindow);
    EXPECT_TRUE(waited);
    expectDone(pressed);
    EXPECT_EQ(trackingState, TrackingState::AppWarming);
    EXPECT_EQ(testing::readFile(settings()), "Width=1280\r\n");
}

TEST_F(PressDuringHandlersTest, PressDuringAnEvaluationPatchesSoThatNothingIsLeftToOffer) {
    showOffer();
    gfx->meanwhile = [this] {
        if (gfx->questions.back() == "native") {
            EXPECT_EQ(toasts.control.press(1, kConfigure).result, S_OK);
        }
    };
    finish();
    EXPECT_EQ(testing::readFile(settings()), "Width=1280\r\n");
    EXPECT_EQ(log.take().back(), "Brisk : titleManager.isTitleNeedToBeOptimized = 0");
    EXPECT_THAT(toasts.events(), ElementsAre("Show 1", "Activated 1 0"));
}

TEST_F(PressDuringHandlersTest, PressJustBeforeTheAnswersAreReadIsHeard) {
    showOffer();
    std::atomic<bool> isPressed = false;
    RegCreateKeyExAFault.intercept([&](auto... arguments) {
        // The press itself comes here, too.
        if (!isPressed.exchange(true)) {
            EXPECT_EQ(toasts.control.press(1, kDontAskAgain).result, S_OK);
        }
        return RegCreateKeyExAFault.real(arguments...);
    });
    finish();
    EXPECT_EQ(log.take().back(), "Brisk : areToastsAllowed = 0");
    EXPECT_THAT(toasts.events(), ElementsAre("Show 1", "Activated 1 2"));
}

TEST_F(PressDuringHandlersTest, PressDuringABulkPassIsDoneAtOnce) {
    showOffer();
    gfx->questions.clear();
    // Its press began before the pass cleared the toast.
    Gate gate;
    holdNextWrite(gate);
    std::future<Result> pressed = press(1, kNotNow);
    ASSERT_TRUE(gate.waitUntilReached());
    gfx->meanwhile = [&] {
        if (gfx->questions.back() == "optimal") {
            gate.open();
            expectDone(pressed);
        }
    };
    onMassivePatching();
    EXPECT_EQ(stateValue("ToastsShown", "game.exe"), 1);
    EXPECT_EQ(testing::readFile(settings()), "Width=1280\r\n");
}

TEST_F(PressDuringHandlersTest, PressDuringABulkPassWaitsForTheTitleThatIsBeingPatched) {
    loadRegistryGame();
    Gate gate;
    showToast("Offer", "", "", {{"Configure Settings", [&gate] {
                                     gate.pass();
                                     configureSettings();
                                 }}});
    std::future<Result> pressed = press(1, kConfigure);
    ASSERT_TRUE(gate.waitUntilReached());
    bool waited = false;
    RegSetValueExAFault.intercept([&](auto... arguments) {
        if (!gate.isOpen()) {
            gate.open();
            waited = !isReady(pressed, kGracePeriod);
        }
        return RegSetValueExAFault.real(arguments...);
    });
    onMassivePatching();
    EXPECT_TRUE(waited);
    expectDone(pressed);
    EXPECT_EQ(gameValue("A"), 1);
    EXPECT_EQ(gameValue("B"), 2);
    // The pass and the press, one after the other.
    EXPECT_THAT(log.take(), Contains("Brisk : 'The Game' optimized.").Times(2));
}

TEST_F(PressDuringHandlersTest, TitleInformationIsReceivedDuringAPress) {
    showOffer();
    Gate gate;
    holdNextWrite(gate);
    std::future<Result> pressed = press(1, kNotNow);
    ASSERT_TRUE(gate.waitUntilReached());
    std::string text = "[1, 2";
    const COPYDATASTRUCT data{BRISK_TITLE_INFO_TAG, static_cast<DWORD>(text.size()), text.data()};
    receiveTitleInfo(Desktop::kServiceWindow, BRISK_TITLE_INFO_TAG, &data);
    gate.open();
    expectDone(pressed);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : Toast : Not now", "Brisk : receiveTitleInfo",
                                        "Brisk : got exception while processing titles info",
                                        "Brisk : increment toasts counter for game.exe"));
}

} // namespace
} // namespace brisk
