// Presses and clears of toasts at the same time, and presses that come late.
#include "ButtonThreadsFixture.h"

#include "toast/ButtonPresses.h"
#include "toast/ToastManager.h"
#include "tracking/BulkPatching.h"

namespace brisk {
namespace {

using ::testing::Contains;
using testing::Desktop;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using testing::Gate;
using ::testing::IsEmpty;
using testing::kGracePeriod;
using testing::Lines;
using testing::operator+;
using ::testing::StartsWith;

class ButtonThreadsTest : public testing::ButtonThreadsFixture {};

TEST_F(ButtonThreadsTest, HandlersDoNotWaitForARefusalThatIsBeingCounted) {
    showOffer();
    Gate gate;
    holdNextWrite(gate);
    std::future<Result> pressed = press(1, kNotNow);
    ASSERT_TRUE(gate.waitUntilReached());
    finish();
    onAppStarted(Desktop::kServiceWindow, 1001, Desktop::kGame);
    onTrackingTimer(Desktop::kServiceWindow);
    onMassivePatching();
    clearToasts();
    EXPECT_FALSE(gate.isOpen());
    gate.open();
    expectDone(pressed);
    // The press concerns the title of its moment.
    EXPECT_EQ(stateValue("ToastsShown", "game.exe"), 1);
    EXPECT_EQ(testing::readFile(settings()), "Width=1280\r\n");
}

TEST_F(ButtonThreadsTest, HandlersWaitForAPatchThatIsBeingWrittenAndFindItWhole) {
    loadRegistryGame();
    showOffer();
    Gate gate;
    holdNextWrite(gate);
    std::future<Result> pressed = press(1, kConfigure);
    ASSERT_TRUE(gate.waitUntilReached());
    auto handled = std::async(std::launch::async, [] {
        onMassivePatching();
        finish();
        onAppStarted(Desktop::kServiceWindow, 1001, Desktop::kGame);
    });
    EXPECT_FALSE(isReady(handled, kGracePeriod));
    gate.open();
    ASSERT_TRUE(isReady(handled));
    expectDone(pressed);
    EXPECT_EQ(gameValue("A"), 1);
    EXPECT_EQ(gameValue("B"), 2);
    EXPECT_EQ(stateValue("PatchedApps", "game.exe"), 1);
    EXPECT_THAT(log.take(), Contains("Brisk : game.exe doesn't need optimization. Skip."));
}

TEST_F(ButtonThreadsTest, ToastsAreClearedDuringAPressThatShowsItsOwn) {
    loadRegistryGame();
    showOffer();
    Gate gate;
    RegSetValueExAFault.intercept([&gate](auto...) -> LSTATUS {
        gate.pass();
        return ERROR_ACCESS_DENIED;
    });
    std::future<Result> pressed = press(1, kConfigure);
    ASSERT_TRUE(gate.waitUntilReached());
    clearToasts();
    gate.open();
    for (int round = 0; round < 20; ++round) {
        clearToasts();
    }
    expectDone(pressed);
    EXPECT_THAT(log.take(),
                ElementsAre("Brisk : Toast : Configure Settings", "Brisk : setValue failed for 'A'. Error 5.",
                            "Brisk : setValue failed for 'B'. Error 5.", "Brisk : failed to patch game.exe"));
    EXPECT_THAT(toasts.shown(), ElementsAre(offer(), testing::gameFailedToast()));
    clearToasts();
    EXPECT_TRUE(toasts.control.list().empty());
}

TEST_F(ButtonThreadsTest, PressThatWasUnderWayWhenItsToastWasClearedStillActs) {
    showOffer();
    showToast("Second", "", "", {{"Ok", [] { logLine("Brisk : second"); }}});
    Gate gate;
    holdNextWrite(gate);
    std::future<Result> first = press(1, kNotNow);
    ASSERT_TRUE(gate.waitUntilReached());
    // Waits in the notification system behind the first.
    std::future<Result> second = press(2, 0);
    ASSERT_TRUE(waitUntilNoneIsListed());
    clearToasts();
    EXPECT_FALSE(isReady(second, std::chrono::milliseconds(0)));
    gate.open();
    expectDone(first);
    expectDone(second);
    EXPECT_THAT(log.take(), ElementsAreArray(testing::notNowLines("game.exe") + Lines{"Brisk : second"}));
}

TEST_F(ButtonThreadsTest, ClearedToastCannotBePressed) {
    showOffer();
    clearToasts();
    EXPECT_THROW(toasts.control.press(1, kConfigure), std::runtime_error);
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(testing::readFile(settings()), "Width=1920\r\n");
}

TEST_F(ButtonThreadsTest, TwoPressesOfOneToastActTwice) {
    showOffer();
    std::future<Result> first = std::async(std::launch::async, [this] { return toasts.control.activate(1, "1"); });
    std::future<Result> second = std::async(std::launch::async, [this] { return toasts.control.activate(1, "1"); });
    expectDone(first);
    expectDone(second);
    EXPECT_EQ(stateValue("ToastsShown", "game.exe"), 2);
    EXPECT_EQ(toasts.control.press(1, kConfigure).result, S_OK);
    EXPECT_EQ(testing::readFile(settings()), "Width=1280\r\n");
    const Lines notNow = testing::notNowLines("game.exe");
    EXPECT_THAT(log.take(), ElementsAreArray(notNow + notNow + testing::configuredLines("The Game", "game.exe")));
}

TEST_F(ButtonThreadsTest, DismissedToastActsWhenItIsPressedLater) {
    showOffer();
    toasts.control.dismiss(1, 0);
    toasts.control.dismiss(1, 2);
    finish(); // in the meantime; a new offer takes the old one's place
    EXPECT_THROW(toasts.control.press(1, kNotNow), std::runtime_error);
    toasts.control.dismiss(2, 0);
    EXPECT_THAT(toasts.control.list(), ElementsAre(StartsWith(std::string("2 centre ") + testing::kOfferTitle)));
    log.take();
    EXPECT_EQ(toasts.control.press(2, kConfigure).result, S_OK);
    EXPECT_THAT(log.take(), ElementsAreArray(testing::configuredLines("The Game", "game.exe")));
    EXPECT_EQ(testing::readFile(settings()), "Width=1280\r\n");
}

TEST_F(ButtonThreadsTest, ToastManagerIsLetGoDuringAPress) {
    showOffer();
    std::filesystem::remove(settings());
    Gate gate;
    showToast("Second", "", "", {{"Ok", [&gate] {
                                      gate.pass();
                                      configureSettings(); // fails and shows its error
                                  }}});
    std::future<Result> pressed = press(2, 0);
    ASSERT_TRUE(gate.waitUntilReached());
    ToastManager::instance()->cleanup();
    gate.open();
    expectDone(pressed);
    // The pressed toast is gone already.
    EXPECT_THAT(toasts.events(),
                ElementsAre("Show 1", "Show 2", "Activated 2 0", "Hide 1", "Hide 2 -> 0x803E0107", "Show 3"));
}

TEST_F(ButtonThreadsTest, EndWaitsForAFailingPatchUntilItsErrorIsShown) {
    loadRegistryGame();
    showOffer();
    Gate gate;
    RegSetValueExAFault.intercept([&gate](auto...) -> LSTATUS {
        gate.pass();
        return ERROR_ACCESS_DENIED;
    });
    std::future<Result> pressed = press(1, kConfigure);
    ASSERT_TRUE(gate.waitUntilReached());
    auto end = std::async(std::launch::async, [this] {
        buttonPresses().end();
        return toasts.shown();
    });
    EXPECT_FALSE(isReady(end, kGracePeriod));
    gate.open();
    ASSERT_TRUE(isReady(end));
    EXPECT_THAT(end.get(), ElementsAre(offer(), testing::gameFailedToast()));
    expectDone(pressed);
}

TEST_F(ButtonThreadsTest, EndWaitsForTheCountOfARefusalAndLetsNoOtherPressBegin) {
    showOffer();
    showToast("Second", "", "", {{"Configure Settings", configureSettings}});
    showToast("Third", "", "", {{"Don't ask again", dontAskAgain}});
    Gate gate;
    holdNextWrite(gate);
    std::future<Result> counted = press(1, kNotNow);
    ASSERT_TRUE(gate.waitUntilReached());
    auto end = std::async(std::launch::async, [] {
        buttonPresses().end();
        return stateValue("ToastsShown", "game.exe");
    });
    EXPECT_FALSE(isReady(end, kGracePeriod));
    std::future<Result> late = press(2, 0);
    gate.open();
    ASSERT_TRUE(isReady(end));
    EXPECT_EQ(end.get(), 1);
    expectDone(counted);
    expectDone(late);
    EXPECT_EQ(toasts.control.press(3, 0).result, S_OK);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : Toast : Not now", "Brisk : increment toasts counter for game.exe"));
    EXPECT_EQ(testing::readFile(settings()), "Width=1920\r\n");
    EXPECT_EQ(stateValue("PatchedApps", "game.exe"), -1);
    EXPECT_EQ(stateValue("", "ToastsNotAllowed"), -1);
    EXPECT_EQ(toasts.shown().size(), 3u);
}

TEST_F(ButtonThreadsTest, PressesAndHandlersAtOnceLeaveTheFileWhole) {
    const std::string rest(20'000, 'x');
    constexpr int kRounds = 50;
    for (int round = 0; round < kRounds; ++round) {
        testing::writeFile(settings(), "Width=1920\r\n" + rest);
        toasts.control.reset();
        showOffer();
        std::future<Result> pressed = press(1, kConfigure);
        ASSERT_TRUE(waitUntilNoneIsListed());
        onTrackingTimer(Desktop::kServiceWindow);
        finish();
        onMassivePatching();
        expectDone(pressed);
        ASSERT_EQ(testing::readFile(settings()), "Width=1280\r\n" + rest) << round;
        log.take();
    }
}

} // namespace
} // namespace brisk
