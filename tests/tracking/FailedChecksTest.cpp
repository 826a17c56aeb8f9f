// The per-tick check of a tracked game when it fails.
#include "ServicesFixture.h"

#include "base/RunTimeParameters.h"

namespace brisk {
namespace {

using testing::Desktop;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using testing::Lines;

constexpr TrackingState kCheckedStates[] = {TrackingState::AppWarming, TrackingState::Tracking,
                                            TrackingState::NotTracking};

class FailedChecksTest : public testing::ServicesFixture {
protected:
    FailedChecksTest() {
        trackingContext.processId = Desktop::kGame;
        trackingContext.processHandle = Desktop::kGameHandle;
    }

    static void tick() { onTrackingTimer(Desktop::kServiceWindow); }

    // A failing tick in each state, and one that succeeds after it.
    void expectOnlyLines(const Lines& lines, const std::function<void(bool)>& fail) {
        for (const TrackingState state : kCheckedStates) {
            trackingState = state;
            trackingContext.intervalCounter = 7;
            fail(true);
            tick();
            EXPECT_EQ(trackingState, state);
            EXPECT_EQ(trackingContext.intervalCounter, 7u);
            EXPECT_THAT(gfx->questions, IsEmpty());
            EXPECT_THAT(log.take(), ElementsAreArray(lines));
            fail(false);
            tick();
            EXPECT_EQ(trackingState, state);
            EXPECT_EQ(trackingContext.intervalCounter, 8u);
            gfx->questions.clear();
            log.take();
        }
        EXPECT_EQ(trackingContext.sampleCount, 1u);
        EXPECT_THAT(desktop.takeCalls(), IsEmpty());
    }
};

TEST_F(FailedChecksTest, ExitCodeThatCannotBeReadCountsNothingOnThisTick) {
    expectOnlyLines({"Brisk : failed to get tracked process exit code."},
                    [this](bool fails) { desktop.hasExitCode = !fails; });
}

TEST_F(FailedChecksTest, NoForegroundWindowCountsNothingOnThisTick) {
    expectOnlyLines({}, [this](bool fails) { desktop.foreground = fails ? nullptr : Desktop::kGameWindow; });
}

TEST_F(FailedChecksTest, ForegroundWindowThatIsGoneCountsNothingOnThisTick) {
    expectOnlyLines({}, [this](bool fails) { desktop.isForegroundAWindow = !fails; });
}

TEST_F(FailedChecksTest, AnotherProcessInTheForegroundCountsNothingOnThisTick) {
    expectOnlyLines({"Brisk : foreground window doesn't belong to tracked process."},
                    [this](bool fails) { desktop.foregroundProcess = fails ? Desktop::kOther : Desktop::kGame; });
}

TEST_F(FailedChecksTest, ForegroundWindowIsTakenBeforeTheExitCode) {
    GetExitCodeProcessFault.intercept([](HANDLE process, DWORD* code) -> BOOL {
        EXPECT_EQ(process, Desktop::kGameHandle);
        EXPECT_EQ(GetForegroundWindowFault.calls(), 1u);
        *code = STILL_ACTIVE;
        return TRUE;
    });
    EXPECT_TRUE(isTrackedAppActive(Desktop::kServiceWindow));
    EXPECT_EQ(GetForegroundWindowFault.calls(), 1u);
}

TEST_F(FailedChecksTest, EndOfTheProcessIsLoggedBeforeTheTimerIsStopped) {
    trackingState = TrackingState::AppWarming;
    desktop.exitCode = 0;
    KillTimerFault.intercept([this](HWND, UINT_PTR) -> BOOL {
        EXPECT_THAT(log.take(), ElementsAre("Brisk : tracked process is closed. Skip tracking, waiting for "
                                            "BRISK_APP_FINISHED message."));
        EXPECT_THAT(desktop.takeCalls(), IsEmpty());
        return FALSE; // whether it succeeds is not asked
    });
    tick();
    EXPECT_THAT(desktop.takeCalls(), ElementsAre("CloseHandle 0xf00"));
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(FailedChecksTest, LateTickAfterTheProcessEndedOnlyFailsItsCheck) {
    trackingState = TrackingState::Tracking;
    desktop.exitCode = 0;
    tick();
    desktop.takeCalls();
    log.take();
    desktop.hasExitCode = false; // the handle is closed
    tick();
    EXPECT_THAT(log.take(), ElementsAre("Brisk : failed to get tracked process exit code."));
    EXPECT_THAT(desktop.takeCalls(), IsEmpty());
    EXPECT_EQ(trackingState, TrackingState::Tracking);
}

TEST_F(FailedChecksTest, MeasuringAtItsLimitIsLeftOnTheTickThatFindsTheProcessEnded) {
    trackingState = TrackingState::Tracking;
    trackingContext.intervalCounter = NumberOfIntervalsForTracking;
    desktop.exitCode = 0;
    tick();
    EXPECT_THAT(log.take(), ElementsAre("Brisk : tracked process is closed. Skip tracking, waiting for "
                                        "BRISK_APP_FINISHED message.",
                                        "Brisk : switch to NOT_TRACKING"));
    EXPECT_THAT(gfx->questions, IsEmpty());
}

} // namespace
} // namespace brisk
