#include "service/GameFixture.h"

namespace brisk::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

class GameTest : public GameFixture {
protected:
    // The end of a game that was not measured at all.
    static Lines insufficientLines() {
        return endedLines("p1 = 0, p2 = 0", "0", "0") + Lines(2, "Brisk : get current display info.") +
               resolutionLines(display()) + Lines{insufficientLine("0")};
    }
};

TEST_F(GameTest, WholeGameFromTheHostsMessageToTheAdjustedFile) {
    start();
    FakeGame game(program);
    play(game);
    toasts.waitForShows(1);
    EXPECT_THAT(shownToasts(), ElementsAre(offer()));
    EXPECT_EQ(readFile(settings()), kSettings);
    game.end();

    const auto press = toasts.press(1, 0);
    EXPECT_EQ(press.handlers, 1u);
    EXPECT_EQ(press.result, S_OK);
    EXPECT_EQ(service.quit(), 0u);
    // The service's whole log.
    EXPECT_THAT(service.log(),
                ElementsAreArray(startLines() + announcedLines(game) + foundLines(game) + measuredLines("40") +
                                 finishedLines("40") + judgedLines("0") + adjustedLines() + Lines{"Brisk : finished"}));
    EXPECT_EQ(readFile(settings()), kAdjustedSettings);
    EXPECT_EQ(stateValue("PatchedApps", "StarlitHarbour.exe"), 1);
    EXPECT_EQ(stateValue("ToastsShown", "StarlitHarbour.exe"), -1);
    EXPECT_THAT(shownToasts(), ElementsAre(offer()));
}

TEST_F(GameTest, AdjustedGameIsNotOfferedAgain) {
    writeFile(settings(), kAdjustedSettings);
    start();
    FakeGame game(program);
    play(game);
    service.quit();
    EXPECT_THAT(log(), ElementsAreArray(announcedLines(game) + foundLines(game) + measuredLines("40") +
                                        finishedLines("40") + neededLines("0.666667", {}) + Lines{"Brisk : finished"}));
    EXPECT_THAT(shownToasts(), IsEmpty());
}

TEST_F(GameTest, GameThatRunsAtTheRefreshRateIsNotOffered) {
    // Without a vendor library the display's 60 Hz stand for the frame rate.
    start("");
    FakeGame game(program);
    play(game);
    service.quit();
    EXPECT_THAT(log(),
                ElementsAreArray(announcedLines(game) + foundLines(game) + measuredLines("60") + finishedLines("60") +
                                 Lines{"Brisk : FPS ratio to optimal is 1", "Brisk : finished"}));
    EXPECT_THAT(shownToasts(), IsEmpty());
}

TEST_F(GameTest, NotNowCountsUpToThreeAndThenThereIsNoOffer) {
    start();
    FakeGame game(program);
    for (unsigned refusal = 1; refusal <= 3; ++refusal) {
        play(game);
        toasts.waitForShows(refusal);
        toasts.press(refusal, 1);
        EXPECT_EQ(stateValue("ToastsShown", "StarlitHarbour.exe"), refusal);
    }
    const std::size_t before = service.log().size();
    play(game);
    service.quit();
    EXPECT_THAT(service.logFrom(before),
                ElementsAreArray(announcedLines(game) + foundLines(game) + measuredLines("40") + finishedLines("40") +
                                 judgedLines("3") + Lines{"Brisk : finished"}));
    EXPECT_THAT(shownToasts(), ElementsAre(offer(), offer(), offer()));
    EXPECT_EQ(readFile(settings()), kSettings);
}

TEST_F(GameTest, NotNowIsLoggedWithTheTitle) {
    start();
    FakeGame game(program);
    play(game);
    toasts.waitForShows(1);
    const std::size_t before = service.log().size();
    toasts.press(1, 1);
    service.quit();
    EXPECT_THAT(service.logFrom(before),
                ElementsAreArray(notNowLines("StarlitHarbour.exe") + Lines{"Brisk : finished"}));
}

TEST_F(GameTest, DismissedOfferCountsNothingAndItsButtonCanStillBePressed) {
    start();
    FakeGame game(program);
    play(game);
    toasts.waitForShows(1);
    const std::size_t before = service.log().size();
    toasts.dismiss(1, 2);
    EXPECT_EQ(stateValue("ToastsShown", "StarlitHarbour.exe"), -1);
    toasts.press(1, 0);
    service.quit();
    EXPECT_THAT(service.logFrom(before), ElementsAreArray(adjustedLines() + Lines{"Brisk : finished"}));
    EXPECT_EQ(readFile(settings()), kAdjustedSettings);
}

TEST_F(GameTest, DontAskAgainEndsOffersUntilTheHostResetsTheAnswers) {
    start();
    FakeGame game(program);
    play(game);
    toasts.waitForShows(1);
    std::size_t before = service.log().size();
    toasts.press(1, 2);
    EXPECT_THAT(service.logFrom(before), ElementsAreArray(dontAskAgainLines()));
    EXPECT_EQ(stateValue("", "ToastsNotAllowed"), 1);

    before = service.log().size();
    play(game);
    service.post(BRISK_RESET_PROMPT_COUNTERS);
    service.waitForLog("Brisk : onResetPromptCounters");
    EXPECT_THAT(shownToasts(), ElementsAre(offer()));
    play(game);
    toasts.waitForShows(2);
    service.quit();
    const Lines again = announcedLines(game) + foundLines(game) + measuredLines("40") + finishedLines("40");
    EXPECT_THAT(service.logFrom(before),
                ElementsAreArray(again + slowLines() +
                                 Lines{"Brisk : areToastsAllowed = 0", "Brisk : onResetPromptCounters"} + again +
                                 judgedLines("0") + Lines{"Brisk : finished"}));
}

TEST_F(GameTest, FileThatCannotBeWrittenGivesTheErrorToast) {
    start();
    FakeGame game(program);
    play(game);
    toasts.waitForShows(1);
    const std::size_t before = service.log().size();
    // Others may read the file meanwhile, but not write it.
    const UniqueHandle editor(CreateFileW(settings().c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                          OPEN_EXISTING, 0, nullptr));
    ASSERT_NE(editor.get(), INVALID_HANDLE_VALUE);
    toasts.press(1, 0);
    service.quit();
    EXPECT_THAT(service.logFrom(before), ElementsAre("Brisk : Toast : Configure Settings",
                                                     "Brisk : failed to patch StarlitHarbour.exe", "Brisk : finished"));
    EXPECT_THAT(shownToasts(), ElementsAre(offer(), gameFailedToast()));
    EXPECT_EQ(readFile(settings()), kSettings);
    EXPECT_EQ(stateValue("PatchedApps", "StarlitHarbour.exe"), -1);
}

TEST_F(GameTest, TicksOutsideTheForegroundDoNotCount) {
    start();
    FakeGame game(program);
    game.giveForegroundAway();
    announceWithTicks(game, 2);
    // Found out of the foreground twice, then in it.
    waitUntil("two ticks", [this] { return log().size() >= 3 + 2 * 4; });
    game.takeForeground();
    service.suspend();
    service.tick(1 + 2);
    service.resume();
    service.waitForLog("Brisk : switch to TRACKING");
    game.giveForegroundAway();
    const std::size_t before = service.log().size();
    service.suspend();
    service.tick(5);
    service.post(BRISK_APP_FINISHED);
    service.resume();
    service.quit();
    const Lines away(5, "Brisk : foreground window doesn't belong to tracked process.");
    EXPECT_THAT(service.logFrom(before), ElementsAreArray(away + insufficientLines() + Lines{"Brisk : finished"}));
}

TEST_F(GameTest, SecondGameEndsAllTracking) {
    start();
    FakeGame game(program);
    service.suspend();
    announce(game);
    service.tick(1);
    announce(game);
    service.tick(3);
    service.post(BRISK_APP_FINISHED);
    announce(game);
    service.resume();
    service.quit();
    EXPECT_THAT(
        log(), ElementsAreArray(announcedLines(game) + foundLines(game) +
                                Lines{announcedLines(game)[0], "Brisk : stop tracking, doesn't track more than one app",
                                      "Brisk : switch to IDLE", "Brisk : onAppFinished, p1 = 0, p2 = 0",
                                      "Brisk : got BRISK_APP_FINISHED message in IDLE state."} +
                                announcedLines(game) + Lines{"Brisk : finished"}));
}

TEST_F(GameTest, GameThatDiesStopsTheTicksUntilTheHostReportsItsEnd) {
    start();
    FakeGame game(program);
    announceWithTicks(game, 1);
    service.waitForLog("Brisk : switch to APP_WARMING");
    const std::size_t before = service.log().size();
    game.die();
    // The real timer notices.
    service.waitForLog("Brisk : tracked process is closed. Skip tracking, waiting for BRISK_APP_FINISHED message.");
    service.post(BRISK_APP_FINISHED);
    service.quit();
    Lines lines = service.logFrom(before);
    // A tick or two may still have found the dying game in the foreground, or nothing there.
    std::erase(lines, "Brisk : foreground window doesn't belong to tracked process.");
    std::erase(lines, "Brisk : switch to TRACKING");
    EXPECT_THAT(lines, ElementsAreArray(Lines{"Brisk : tracked process is closed. Skip tracking, waiting for "
                                              "BRISK_APP_FINISHED message."} +
                                        insufficientLines() + Lines{"Brisk : finished"}));
}

TEST_F(GameTest, RealTimerTicksOnceASecond) {
    start();
    FakeGame game(program);
    const auto begin = std::chrono::steady_clock::now();
    announce(game);
    service.waitForLog("Brisk : switch to TRACKING"); // found in one tick, warmed up in two more
    const auto duration = std::chrono::steady_clock::now() - begin;
    EXPECT_GE(duration, std::chrono::milliseconds(2900));
    service.quit();
}

TEST_F(GameTest, UnknownGameIsSkipped) {
    start();
    service.post(BRISK_APP_STARTED, 1002, 0x10);
    service.tick(2);
    service.quit();
    EXPECT_THAT(log(), ElementsAre("Brisk : onAppStarted, p1 = 1002, p2 = 0x10",
                                   "Brisk : GameID 1002 is not supported. Skip.", "Brisk : finished"));
}

TEST_F(GameTest, GameWithoutAPublisherMatchesByItsNameAlone) {
    FakeGame::install(FakeGame::plainExecutable(), program);
    start();
    FakeGame game(program);
    announceWithTicks(game, 1);
    service.quit();
    EXPECT_THAT(log(), ElementsAreArray(
                           announcedLines(game) + lookedAtLines(game) +
                           Lines{"Brisk : couldn't get file properties for StarlitHarbour.exe"} + checkedLines("") +
                           Lines{"Brisk : config found.", "Brisk : switch to APP_WARMING", "Brisk : finished"}));
}

TEST_F(GameTest, GameWithoutItsConfigurationIsNotTracked) {
    std::filesystem::remove(settings());
    start();
    FakeGame game(program);
    announceWithTicks(game, 1);
    service.quit();
    EXPECT_THAT(log(), ElementsAreArray(announcedLines(game) + lookedAtLines(game) + checkedLines("Brackwater Games") +
                                        Lines{"Brisk : config not found.",
                                              "Brisk : config for StarlitHarbour.exe was not found. Skip.",
                                              "Brisk : finished"}));
}

TEST_F(GameTest, NewGameTakesTheOldOfferAway) {
    start();
    FakeGame game(program);
    play(game);
    toasts.waitForShows(1);
    announce(game);
    standin::waitForRecordLine(record, "Hide 1");
    service.quit();
}

TEST_F(GameTest, ToastThatCannotBeShownIsLogged) {
    SetEnvironmentVariableW(standin::kFailVariable, L"Show=0x80070005");
    start();
    FakeGame game(program);
    play(game);
    service.quit();
    EXPECT_THAT(log(), ElementsAreArray(announcedLines(game) + foundLines(game) + measuredLines("40") +
                                        finishedLines("40") + judgedLines("0") +
                                        Lines{"Brisk : ToastManager: Can't show notification", "Brisk : finished"}));
}

} // namespace
} // namespace brisk::testing
