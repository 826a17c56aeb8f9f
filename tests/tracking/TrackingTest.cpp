// A game in the foreground, tick by tick.
#include "ServicesFixture.h"

#include "base/RunTimeParameters.h"

#include <cmath>

namespace brisk {
namespace {

using ::testing::AnyOf;
using testing::Desktop;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::Lines;

class TrackingTest : public testing::ServicesFixture {
protected:
    TrackingTest() {
        trackingContext.processId = Desktop::kGame;
        trackingContext.processHandle = Desktop::kGameHandle;
        NumberOfIntervalsForWarming = 3;
        NumberOfIntervalsForTracking = 3;
        NumberOfIntervalsForNotTracking = 3;
    }

    static void tick(unsigned count = 1) {
        for (; count > 0; --count) {
            onTrackingTimer(Desktop::kServiceWindow);
        }
    }

    // One more tick of measuring at the frame rate.
    void measure(std::uint32_t fps) {
        gfx->fps = fps;
        trackingState = TrackingState::Tracking;
        trackingContext.intervalCounter = 0;
        tick();
    }
};

TEST_F(TrackingTest, EveryStateHasItsNameAndAnyOtherNumberIsUnknown) {
    const char* const names[] = {"IDLE", "WAITING_APP", "APP_WARMING", "TRACKING", "NOT_TRACKING", "UNKNOWN"};
    for (std::uint32_t state = 0; state < 6; ++state) {
        EXPECT_EQ(getStateName(static_cast<TrackingState>(state)), names[state]);
    }
    EXPECT_EQ(getStateName(static_cast<TrackingState>(0xFFFFFFFF)), "UNKNOWN");
}

TEST_F(TrackingTest, SwitchingSetsTheCounterToZeroAndTouchesNothingElse) {
    trackingContext.intervalCounter = 5;
    trackingContext.sampleCount = 6;
    switchToState(TrackingState::NotTracking);
    EXPECT_EQ(trackingState, TrackingState::NotTracking);
    EXPECT_EQ(trackingContext.intervalCounter, 0u);
    EXPECT_EQ(trackingContext.sampleCount, 6u);
    switchToState(static_cast<TrackingState>(5));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : switch to NOT_TRACKING", "Brisk : switch to UNKNOWN"));
    EXPECT_THAT(desktop.takeCalls(), IsEmpty());
}

TEST_F(TrackingTest, TicksInIdleAndInAnUnknownStateDoNothing) {
    tick();
    trackingState = static_cast<TrackingState>(5);
    tick();
    EXPECT_EQ(trackingState, static_cast<TrackingState>(5));
    EXPECT_EQ(GetForegroundWindowFault.calls(), 0u);
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(TrackingTest, WarmingAndPauseEndWithTheLastOfTheirTicks) {
    for (const TrackingState state : {TrackingState::AppWarming, TrackingState::NotTracking}) {
        SCOPED_TRACE(getStateName(state));
        trackingState = state;
        tick(2);
        EXPECT_EQ(trackingContext.intervalCounter, 2u);
        EXPECT_THAT(log.take(), IsEmpty());
        tick();
        EXPECT_EQ(trackingContext.intervalCounter, 0u);
        EXPECT_EQ(trackingState, TrackingState::Tracking);
        EXPECT_THAT(log.take(), ElementsAre("Brisk : switch to TRACKING"));
        EXPECT_THAT(gfx->questions, IsEmpty());
    }
}

TEST_F(TrackingTest, MeasuringEndsWithTheLastOfItsTicks) {
    trackingState = TrackingState::Tracking;
    tick(2);
    EXPECT_EQ(trackingContext.intervalCounter, 2u);
    tick();
    EXPECT_EQ(trackingContext.intervalCounter, 0u);
    EXPECT_EQ(trackingState, TrackingState::NotTracking);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : FPS = 60", "Brisk : FPS = 60", "Brisk : FPS = 60",
                                        "Brisk : switch to NOT_TRACKING"));
    EXPECT_THAT(gfx->questions, ElementsAre("fps", "fps", "fps"));
    EXPECT_EQ(trackingContext.sampleCount, 3u);
    EXPECT_EQ(trackingContext.fpsSum, 180u);
    EXPECT_EQ(trackingContext.averageFps, 60u);
}

TEST_F(TrackingTest, TicksInTheBackgroundCountNeitherForWarmingNorForThePause) {
    desktop.foregroundProcess = Desktop::kOther;
    for (const TrackingState state : {TrackingState::AppWarming, TrackingState::NotTracking}) {
        trackingState = state;
        tick(5);
        EXPECT_EQ(trackingState, state);
        EXPECT_EQ(trackingContext.intervalCounter, 0u);
    }
    EXPECT_THAT(log.take(), Each("Brisk : foreground window doesn't belong to tracked process."));
    // Not even the limit is looked at.
    NumberOfIntervalsForWarming = 0;
    trackingState = TrackingState::AppWarming;
    tick();
    EXPECT_EQ(trackingState, TrackingState::AppWarming);
}

TEST_F(TrackingTest, BackgroundTickDoesNotCountButTheLimitIsTestedOnIt) {
    desktop.foregroundProcess = Desktop::kOther;
    trackingState = TrackingState::Tracking;
    trackingContext.intervalCounter = 2;
    tick();
    EXPECT_EQ(trackingContext.intervalCounter, 2u);
    EXPECT_EQ(trackingState, TrackingState::Tracking);
    NumberOfIntervalsForTracking = 2;
    tick();
    EXPECT_EQ(trackingState, TrackingState::NotTracking);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : foreground window doesn't belong to tracked process.",
                                        "Brisk : foreground window doesn't belong to tracked process.",
                                        "Brisk : switch to NOT_TRACKING"));
    EXPECT_THAT(gfx->questions, IsEmpty());
    EXPECT_EQ(trackingContext.sampleCount, 0u);
}

TEST_F(TrackingTest, LimitsOfZeroSwitchWithEveryTick) {
    NumberOfIntervalsForWarming = 0;
    NumberOfIntervalsForTracking = 0;
    NumberOfIntervalsForNotTracking = 0;
    trackingState = TrackingState::AppWarming;
    tick(4);
    EXPECT_THAT(log.take(),
                ElementsAre("Brisk : switch to TRACKING", "Brisk : FPS = 60", "Brisk : switch to NOT_TRACKING",
                            "Brisk : switch to TRACKING", "Brisk : FPS = 60", "Brisk : switch to NOT_TRACKING"));
}

TEST_F(TrackingTest, CountersAndLimitsAre64BitsWide) {
    NumberOfIntervalsForWarming = 0x1'0000'0001;
    trackingState = TrackingState::AppWarming;
    trackingContext.intervalCounter = 0xFFFFFFFF;
    tick();
    EXPECT_EQ(trackingState, TrackingState::AppWarming);
    EXPECT_EQ(trackingContext.intervalCounter, 0x1'0000'0000u);
    tick();
    EXPECT_EQ(trackingState, TrackingState::Tracking);
}

TEST_F(TrackingTest, ByDefaultAGameIsMeasuredFor30SecondsAfter120) {
    NumberOfIntervalsForWarming = 120;
    NumberOfIntervalsForTracking = 30;
    NumberOfIntervalsForNotTracking = 120;
    trackingState = TrackingState::AppWarming;
    gfx->fps = 40;
    tick(120 + 30);
    EXPECT_EQ(trackingState, TrackingState::NotTracking);
    EXPECT_EQ(trackingContext.sampleCount, 30u);
    gfx->fps = 61;
    tick(119);
    EXPECT_EQ(trackingState, TrackingState::NotTracking);
    tick(1 + 29);
    EXPECT_EQ(trackingState, TrackingState::Tracking);
    tick();
    EXPECT_EQ(trackingState, TrackingState::NotTracking);
    EXPECT_EQ(trackingContext.sampleCount, 60u);
    EXPECT_EQ(trackingContext.fpsSum, 30u * 40 + 30u * 61);
    EXPECT_EQ(trackingContext.averageFps, 50u); // 50.5
}

TEST_F(TrackingTest, FrameRatesOf15And300AreAcceptedAnd14And301AreOnlyLogged) {
    measure(14);
    measure(301);
    measure(0);
    EXPECT_EQ(trackingContext.sampleCount, 0u);
    EXPECT_EQ(trackingContext.intervalCounter, 1u);
    measure(15);
    EXPECT_EQ(trackingContext.sampleCount, 1u);
    EXPECT_EQ(trackingContext.averageFps, 15u);
    measure(300);
    EXPECT_EQ(trackingContext.sampleCount, 2u);
    EXPECT_EQ(trackingContext.fpsSum, 315u);
    EXPECT_EQ(trackingContext.averageFps, 157u);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : FPS = 14", "Brisk : FPS = 301", "Brisk : FPS = 0", "Brisk : FPS = 15",
                                        "Brisk : FPS = 300"));
}

TEST_F(TrackingTest, BoundsAreInclusiveToTheLastDigit) {
    addFpsSample(std::nextafter(15.0f, 0.0f));
    addFpsSample(std::nextafter(300.0f, 400.0f));
    EXPECT_EQ(trackingContext.sampleCount, 0u);
    addFpsSample(15.0f);
    addFpsSample(300.0f);
    EXPECT_EQ(trackingContext.sampleCount, 2u);
}

TEST_F(TrackingTest, RateIsDecimalAndInSinglePrecision) {
    processLog.text(std::hex, std::showbase);
    measure(16'777'217);
    measure(60);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : FPS = 1.67772e+07", "Brisk : FPS = 60"));
}

TEST_F(TrackingTest, SumLosesItsLowDigitsWhereSinglePrecisionEnds) {
    trackingContext.fpsSum = 16'777'216;
    addFpsSample(15);
    EXPECT_EQ(trackingContext.fpsSum, 16'777'232u);
    trackingContext.fpsSum = 1u << 30;
    addFpsSample(60);
    EXPECT_EQ(trackingContext.fpsSum, 1u << 30);
    addFpsSample(65);
    EXPECT_EQ(trackingContext.fpsSum, (1u << 30) + 128);
    // The sum itself is rounded on its way through single precision.
    trackingContext.fpsSum = (1u << 30) + 1;
    addFpsSample(15);
    EXPECT_EQ(trackingContext.fpsSum, 1u << 30);
}

TEST_F(TrackingTest, FractionOfTheSumIsCutOff) {
    addFpsSample(15.75f);
    EXPECT_EQ(trackingContext.fpsSum, 15u);
    addFpsSample(15.75f);
    EXPECT_EQ(trackingContext.fpsSum, 30u);
}

TEST_F(TrackingTest, AverageIsAWholeNumberCutOffAndStoredIn32Bits) {
    addFpsSample(20);
    addFpsSample(29);
    EXPECT_EQ(trackingContext.averageFps, 24u); // 24.5
    addFpsSample(25);
    EXPECT_EQ(trackingContext.averageFps, 24u); // 24.67
    resetTrackingContext();
    trackingContext.fpsSum = (std::uint64_t{1} << 40) + (std::uint64_t{1} << 20);
    addFpsSample(15);
    EXPECT_EQ(trackingContext.averageFps, 1u << 20);
}

TEST_F(TrackingTest, WithTheOverrideTheGraphicsInformationIsNeverAsked) {
    fpsOverride = 42;
    measure(200);
    EXPECT_EQ(trackingContext.averageFps, 42u);
    EXPECT_THAT(gfx->questions, IsEmpty());
    EXPECT_THAT(log.take(), ElementsAre("Brisk : FPS = 42"));
    fpsOverride = 0;
    measure(200);
    EXPECT_EQ(trackingContext.sampleCount, 1u);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : FPS = 0"));
}

TEST_F(TrackingTest, GameInTheForegroundIsActiveWithoutALine) {
    EXPECT_TRUE(isTrackedAppActive(Desktop::kServiceWindow));
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_THAT(desktop.takeCalls(), IsEmpty());
}

TEST_F(TrackingTest, ExitCodeThatCannotBeReadIsLogged) {
    desktop.hasExitCode = false;
    EXPECT_FALSE(isTrackedAppActive(Desktop::kServiceWindow));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : failed to get tracked process exit code."));
    EXPECT_THAT(desktop.takeCalls(), IsEmpty());
}

TEST_F(TrackingTest, EndedProcessStopsTheTimerAndTheStateWaitsForTheHost) {
    for (const TrackingState state : {TrackingState::AppWarming, TrackingState::Tracking, TrackingState::NotTracking}) {
        desktop.exitCode = state == TrackingState::Tracking ? 258 : 0;
        trackingState = state;
        trackingContext.intervalCounter = 1;
        tick();
        EXPECT_EQ(trackingState, state);
        EXPECT_EQ(trackingContext.intervalCounter, 1u);
        EXPECT_EQ(trackingContext.processHandle, Desktop::kGameHandle); // the value, closed
        EXPECT_THAT(desktop.takeCalls(), ElementsAre("KillTimer 0x40 0", "CloseHandle 0xf00"));
        EXPECT_THAT(log.take(), ElementsAre("Brisk : tracked process is closed. Skip tracking, waiting for "
                                            "BRISK_APP_FINISHED message."));
    }
    EXPECT_EQ(trackingContext.sampleCount, 0u);
}

TEST_F(TrackingTest, EndedProcessIsNoticedAlsoWithoutAForegroundWindow) {
    desktop.foreground = nullptr;
    desktop.exitCode = 0;
    EXPECT_FALSE(isTrackedAppActive(Desktop::kServiceWindow));
    EXPECT_THAT(desktop.takeCalls(), ElementsAre("KillTimer 0x40 0", "CloseHandle 0xf00"));
}

TEST_F(TrackingTest, NoForegroundWindowOrOneJustGoneIsInactiveWithoutALine) {
    desktop.isForegroundAWindow = false;
    EXPECT_FALSE(isTrackedAppActive(Desktop::kServiceWindow));
    desktop.isForegroundAWindow = true;
    desktop.foreground = nullptr;
    EXPECT_FALSE(isTrackedAppActive(Desktop::kServiceWindow));
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(GetWindowThreadProcessIdFault.calls(), 0u);
}

TEST_F(TrackingTest, ForegroundWindowOfAnotherProcessIsLogged) {
    desktop.foregroundProcess = Desktop::kOther;
    EXPECT_FALSE(isTrackedAppActive(Desktop::kServiceWindow));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : foreground window doesn't belong to tracked process."));
}

} // namespace
} // namespace brisk
