// From the host's app-started message to the game in the foreground.
#include "ServicesFixture.h"

#include "toast/ToastManager.h"

namespace brisk {
namespace {

using testing::Desktop;
using testing::Lines;
using testing::operator+;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

class GameStartTest : public testing::ServicesFixture {
protected:
    GameStartTest() { loadGame(); }

    static void announce(WPARAM gameId = 1001, LPARAM processId = Desktop::kGame) {
        onAppStarted(Desktop::kServiceWindow, gameId, processId);
    }

    void announceQuietly() {
        announce();
        log.take();
        desktop.takeCalls();
    }

    static void expectEmptyContext() {
        EXPECT_EQ(trackingContext.gameId, 0u);
        EXPECT_EQ(trackingContext.processId, 0u);
        EXPECT_EQ(trackingContext.processHandle, nullptr);
        EXPECT_EQ(trackingContext.averageFps, 0u);
        EXPECT_EQ(trackingContext.sampleCount, 0u);
        EXPECT_EQ(trackingContext.intervalCounter, 0u);
        EXPECT_EQ(trackingContext.fpsSum, 0u);
        EXPECT_EQ(trackingContext.publisher, "");
        EXPECT_EQ(trackingContext.executableName, "");
    }

    static void fillContext() { trackingContext = {7, 8, Desktop::kGameHandle, 9, 10, 11, 12, "Someone", "other.exe"}; }

    Lines foundLines() const {
        return {"Brisk : shouldStartTracking", "Brisk : HWND = 0x30a2", "Brisk : PID = 0x1f4",
                "Brisk : publisher: 'Studio', binary name: 'game.exe'.",
                "Brisk : checking path '" + toNarrow(settings()) + "'."};
    }
};

TEST_F(GameStartTest, KnownGameIsWaitedForWithACleanContextAndARunningTimer) {
    fillContext();
    Lines linesBeforeTheTimer;
    SetTimerFault.intercept([&](HWND window, UINT_PTR id, UINT period, TIMERPROC procedure) {
        EXPECT_EQ(window, Desktop::kServiceWindow);
        EXPECT_EQ(id, 0u);
        EXPECT_EQ(period, 1000u);
        EXPECT_EQ(procedure, nullptr);
        linesBeforeTheTimer = log.take();
        return UINT_PTR{1};
    });
    announce();
    EXPECT_THAT(linesBeforeTheTimer, ElementsAreArray(testing::acceptedLines(1001, "0x1f4")));
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(SetTimerFault.calls(), 1u);
    EXPECT_THAT(desktop.takeCalls(), IsEmpty());
    EXPECT_EQ(trackingState, TrackingState::WaitingApp);
    EXPECT_EQ(trackingContext.gameId, 1001u);
    EXPECT_EQ(trackingContext.processId, 0x1F4u);
    trackingContext.gameId = 0;
    trackingContext.processId = 0;
    expectEmptyContext();
}

TEST_F(GameStartTest, ParametersAreTakenAsUnsigned32BitNumbers) {
    announce(static_cast<WPARAM>(0x1'0000'0000 + 1001), -1);
    EXPECT_THAT(log.take(), ElementsAreArray(testing::acceptedLines(1001, "0xffffffff")));
    EXPECT_EQ(trackingContext.processId, 0xFFFFFFFFu);
    trackingState = TrackingState::Idle;
    announce(0xFFFFFFFF, 0);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : onAppStarted, p1 = 4294967295, p2 = 0",
                                        "Brisk : GameID 4294967295 is not supported. Skip."));
}

TEST_F(GameStartTest, KnownGameTakesAwayTheToastsOfTheGameBefore) {
    showToast("One", "", "", {});
    showToast("Two", "", "", {});
    announce();
    EXPECT_THAT(toasts.events(), ElementsAre("Show 1", "Show 2", "Hide 1", "Hide 2"));
}

TEST_F(GameStartTest, UnknownGameIsSkippedAndLeavesEverythingAsItIs) {
    fillContext();
    showToast("Offer", "", "", {});
    announce(1002, 0x10);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : onAppStarted, p1 = 1002, p2 = 0x10",
                                        "Brisk : GameID 1002 is not supported. Skip."));
    EXPECT_EQ(trackingState, TrackingState::Idle);
    EXPECT_EQ(getTrackedExecutableName(), "other.exe");
    EXPECT_EQ(trackingContext.fpsSum, 12u);
    EXPECT_THAT(desktop.takeCalls(), IsEmpty());
    EXPECT_THAT(toasts.events(), ElementsAre("Show 1"));
}

TEST_F(GameStartTest, SecondGameEndsAllTrackingInEveryStateAndIsNotTrackedEither) {
    showToast("Offer", "", "", {});
    for (std::uint32_t state = 1; state <= 4; ++state) {
        for (const WPARAM gameId : {WPARAM{1001}, WPARAM{5}}) {
            fillContext();
            trackingState = static_cast<TrackingState>(state);
            announce(gameId, 0x2B8);
            EXPECT_THAT(log.take(),
                        ElementsAre("Brisk : onAppStarted, p1 = " + std::to_string(gameId) + ", p2 = 0x2b8",
                                    "Brisk : stop tracking, doesn't track more than one app", "Brisk : switch to IDLE"))
                << state;
            EXPECT_EQ(trackingState, TrackingState::Idle);
            expectEmptyContext();
            // The handle is dropped, not closed.
            EXPECT_THAT(desktop.takeCalls(), ElementsAre("KillTimer 0x40 0"));
        }
    }
    EXPECT_THAT(toasts.events(), ElementsAre("Show 1"));
    announce();
    EXPECT_EQ(trackingState, TrackingState::WaitingApp);
}

TEST_F(GameStartTest, SecondGameStopsTheTimerBeforeTheStateAndTheContextGo) {
    fillContext();
    trackingState = TrackingState::Tracking;
    KillTimerFault.intercept([this](HWND window, UINT_PTR id) -> BOOL {
        EXPECT_EQ(window, Desktop::kServiceWindow);
        EXPECT_EQ(id, 0u);
        EXPECT_THAT(log.take(), ElementsAre("Brisk : onAppStarted, p1 = 1001, p2 = 0x1f4",
                                            "Brisk : stop tracking, doesn't track more than one app"));
        EXPECT_EQ(trackingState, TrackingState::Tracking);
        EXPECT_EQ(trackingContext.intervalCounter, 11u);
        EXPECT_EQ(trackingContext.executableName, "other.exe");
        return FALSE; // whether it succeeds is not asked
    });
    announce();
    EXPECT_EQ(KillTimerFault.calls(), 1u);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : switch to IDLE"));
    expectEmptyContext();
}

TEST_F(GameStartTest, ToastsAreClearedBeforeAnythingIsSaidOrChanged) {
    fillContext();
    ToastManager::instance()->cleanup();
    GetProcAddressFault.fail(nullptr);
    EXPECT_THROW(announce(), std::runtime_error);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : onAppStarted, p1 = 1001, p2 = 0x1f4"));
    EXPECT_EQ(trackingState, TrackingState::Idle);
    EXPECT_EQ(trackingContext.executableName, "other.exe");
    EXPECT_THAT(desktop.takeCalls(), IsEmpty());
}

TEST_F(GameStartTest, GameInTheForegroundIsFoundOpenedAndWarmedUp) {
    announceQuietly();
    onTrackingTimer(Desktop::kServiceWindow);
    EXPECT_THAT(log.take(),
                ElementsAreArray(foundLines() + Lines{"Brisk : config found.", "Brisk : switch to APP_WARMING"}));
    EXPECT_THAT(desktop.takeCalls(), ElementsAre("OpenProcess 0x400 0 0x1f4"));
    EXPECT_EQ(desktop.askedFile, desktop.executable);
    EXPECT_EQ(trackingState, TrackingState::AppWarming);
    EXPECT_EQ(trackingContext.publisher, "Studio");
    EXPECT_EQ(trackingContext.executableName, "game.exe");
    EXPECT_EQ(trackingContext.processHandle, Desktop::kGameHandle);
}

TEST_F(GameStartTest, NoForegroundWindowIsNotTheGame) {
    announceQuietly();
    desktop.foreground = nullptr;
    EXPECT_FALSE(shouldStartTracking(Desktop::kServiceWindow));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : shouldStartTracking", "Brisk : HWND = 0"));
    EXPECT_EQ(GetWindowThreadProcessIdFault.calls(), 0u);
}

TEST_F(GameStartTest, AnotherProcessInTheForegroundIsLoggedInTheBaseOfBefore) {
    announceQuietly();
    desktop.foregroundProcess = Desktop::kOther;
    EXPECT_FALSE(shouldStartTracking(Desktop::kServiceWindow));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : shouldStartTracking", "Brisk : HWND = 0x30a2", "Brisk : PID = 0x2b8",
                                        "Brisk : expected PID 0x1f4 instead of PID 0x2b8"));
    // Hexadecimal stays set on the log, and so does whether the base is shown.
    processLog.text(std::dec, std::noshowbase);
    EXPECT_FALSE(shouldStartTracking(Desktop::kServiceWindow));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : shouldStartTracking", "Brisk : HWND = 30a2", "Brisk : PID = 2b8",
                                        "Brisk : expected PID 1f4 instead of PID 2b8"));
    EXPECT_THAT(desktop.takeCalls(), IsEmpty());
}

TEST_F(GameStartTest, ProcessWithoutAFileNameIsLoggedAndMatchesNoTitle) {
    announceQuietly();
    desktop.executable.clear();
    desktop.publisher.clear();
    EXPECT_FALSE(shouldStartTracking(Desktop::kServiceWindow));
    EXPECT_THAT(log.take(),
                ElementsAre("Brisk : shouldStartTracking", "Brisk : HWND = 0x30a2", "Brisk : PID = 0x1f4",
                            "Brisk : couldn't get file name by PID", "Brisk : couldn't get file properties for ",
                            "Brisk : publisher: '', binary name: ''.", "Brisk : config for  was not found. Skip."));
    EXPECT_EQ(desktop.askedFile, "\\");
    EXPECT_THAT(desktop.takeCalls(), IsEmpty());
    EXPECT_EQ(trackingContext.executableName, "");
}

TEST_F(GameStartTest, TitleWithoutABinaryNameIsFoundForAProcessWithoutAFileName) {
    loadTitles({textTitle("The Game", "", "game.ini")});
    announceQuietly();
    trackingContext.processId = Desktop::kGame;
    desktop.executable.clear();
    desktop.publisher.clear();
    EXPECT_TRUE(shouldStartTracking(Desktop::kServiceWindow));
    EXPECT_EQ(trackingContext.executableName, "");
    EXPECT_EQ(trackingContext.processHandle, Desktop::kGameHandle);
}

TEST_F(GameStartTest, MissingPublisherIsLoggedAndMatchesByTheNameAlone) {
    announceQuietly();
    desktop.publisher.clear();
    EXPECT_TRUE(shouldStartTracking(Desktop::kServiceWindow));
    EXPECT_THAT(log.take(),
                ElementsAre("Brisk : shouldStartTracking", "Brisk : HWND = 0x30a2", "Brisk : PID = 0x1f4",
                            "Brisk : couldn't get file properties for game.exe",
                            "Brisk : publisher: '', binary name: 'game.exe'.",
                            "Brisk : checking path '" + toNarrow(settings()) + "'.", "Brisk : config found."));
    EXPECT_EQ(trackingContext.publisher, "");
}

TEST_F(GameStartTest, AnotherPublishersExecutableIsNotTracked) {
    announceQuietly();
    desktop.publisher = "Someone";
    EXPECT_FALSE(shouldStartTracking(Desktop::kServiceWindow));
    EXPECT_THAT(log.take(), ElementsAre("Brisk : shouldStartTracking", "Brisk : HWND = 0x30a2", "Brisk : PID = 0x1f4",
                                        "Brisk : publisher: 'Someone', binary name: 'game.exe'.",
                                        "Brisk : config for game.exe was not found. Skip."));
    EXPECT_EQ(trackingContext.publisher, "");
    EXPECT_EQ(trackingContext.executableName, "");
    EXPECT_THAT(desktop.takeCalls(), IsEmpty());
}

TEST_F(GameStartTest, GameWithoutItsConfigurationIsWaitedForUntilItHasOne) {
    std::filesystem::remove(settings());
    announceQuietly();
    onTrackingTimer(Desktop::kServiceWindow);
    EXPECT_THAT(log.take(), ElementsAreArray(foundLines() + Lines{"Brisk : config not found.",
                                                                  "Brisk : config for game.exe was not found. Skip."}));
    EXPECT_EQ(trackingState, TrackingState::WaitingApp);
    testing::writeFile(settings(), "Width=1920\r\n");
    onTrackingTimer(Desktop::kServiceWindow);
    EXPECT_EQ(trackingState, TrackingState::AppWarming);
}

TEST_F(GameStartTest, ProcessThatCannotBeOpenedIsNotTrackedAlthoughItsNameIsKnown) {
    announceQuietly();
    desktop.canOpen = false;
    onTrackingTimer(Desktop::kServiceWindow);
    EXPECT_THAT(log.take(), ElementsAreArray(foundLines() + Lines{"Brisk : config found.",
                                                                  "Brisk : OpenProcess failed. Can't track app."}));
    EXPECT_EQ(trackingState, TrackingState::WaitingApp);
    EXPECT_EQ(trackingContext.publisher, "Studio");
    EXPECT_EQ(trackingContext.executableName, "game.exe");
    EXPECT_EQ(trackingContext.processHandle, nullptr);
    desktop.canOpen = true;
    onTrackingTimer(Desktop::kServiceWindow);
    EXPECT_EQ(trackingState, TrackingState::AppWarming);
}

TEST_F(GameStartTest, WaitsForTheGameWithoutALimitOfTime) {
    announceQuietly();
    desktop.foreground = nullptr;
    for (int tick = 0; tick < 1000; ++tick) {
        onTrackingTimer(Desktop::kServiceWindow);
    }
    EXPECT_EQ(trackingState, TrackingState::WaitingApp);
    EXPECT_EQ(trackingContext.intervalCounter, 0u);
    EXPECT_THAT(desktop.takeCalls(), IsEmpty());
}

} // namespace
} // namespace brisk
