// Buttons are pressed on the notification system's thread while the window's thread is at work.
#include "ServicesFixture.h"

#include "Gate.h"
#include "app/RunTimeParameters.h"
#include "toast/ToastManager.h"
#include "tracking/BulkPatching.h"
#include "tracking/GameEnd.h"

#include <atomic>
#include <future>
#include <thread>

namespace brisk {
namespace {

using ::testing::Contains;
using testing::Desktop;
using ::testing::ElementsAre;
using testing::Gate;
using ::testing::IsSupersetOf;
using testing::kLimit;
using testing::kTemptation;
using testing::Lines;

using Result = standin::NotificationStandinControl::EventResult;

constexpr unsigned kConfigure = 0;
constexpr unsigned kNotNow = 1;
constexpr unsigned kDontAskAgain = 2;

class ButtonThreadsTest : public testing::ServicesFixture {
protected:
    ButtonThreadsTest() { loadGame(); }

    // Shows the game's offer, notification 1, in the state of a game that is being tracked.
    void offer() {
        trackingState = TrackingState::Tracking;
        trackingContext.processId = Desktop::kGame;
        trackingContext.processHandle = Desktop::kGameHandle;
        trackingContext.executableName = "game.exe";
        trackingContext.averageFps = 40;
        trackingContext.sampleCount = 120;
        finish();
        trackingState = TrackingState::Tracking;
        log.take();
    }

    // The same title with its setting in the registry, where every write passes a fault point.
    void loadRegistryGame() {
        RegCreateKeyA(HKEY_CURRENT_USER, kGameKey, &gameKey);
        loadTitles({{{"config_type", "reg"},
                     {"id", 1001},
                     {"title_name", "The Game"},
                     {"binary_name", "game.exe"},
                     {"config_locations", nlohmann::json::array({"HKEY_CURRENT_USER/Software/Studio"})},
                     {"config_fields", {{{"key", "A"}, {"value", 1}}, {{"key", "B"}, {"value", 2}}}}}});
        ASSERT_TRUE(titleManager().isTitleSupported("", "game.exe", ""));
    }

    ~ButtonThreadsTest() override {
        if (gameKey) {
            RegCloseKey(gameKey);
        }
    }

    static std::int64_t gameValue(const char* name) {
        DWORD number = 0;
        DWORD size = sizeof number;
        return RegGetValueA(HKEY_CURRENT_USER, kGameKey, name, RRF_RT_REG_DWORD, nullptr, &number, &size) ==
                       ERROR_SUCCESS
                   ? std::int64_t{number}
                   : -1;
    }

    static void finish() { onAppFinished(Desktop::kServiceWindow, 0, 0); }

    std::future<Result> press(unsigned number, unsigned button) {
        return std::async(std::launch::async, [this, number, button] {
            return toasts.control.press(number, button, std::chrono::milliseconds(kLimit));
        });
    }

    template <class Value>
    static bool isReady(const std::future<Value>& task, std::chrono::milliseconds time = kLimit) {
        return task.wait_for(time) == std::future_status::ready;
    }

    static void expectDone(std::future<Result>& pressed) {
        ASSERT_TRUE(isReady(pressed));
        const Result result = pressed.get();
        EXPECT_EQ(result.handlers, 1u);
        EXPECT_EQ(result.result, S_OK);
    }

    // The next write to the registry is held at the gate.
    static void holdNextWrite(Gate& gate) {
        faults::regSetValue.intercept([&gate](auto... arguments) {
            gate.pass();
            return faults::regSetValue.real(arguments...);
        });
    }

    static constexpr char kGameKey[] = "Software\\Studio";
    HKEY gameKey = nullptr;
};

TEST_F(ButtonThreadsTest, PressDuringASecondGamesStartPatchesTheFirstGame) {
    offer();
    faults::killTimer.intercept([this](HWND, UINT_PTR) -> BOOL {
        EXPECT_EQ(toasts.control.press(1, kConfigure).result, S_OK);
        return TRUE;
    });
    onAppStarted(Desktop::kServiceWindow, 1001, Desktop::kOther);
    EXPECT_EQ(testing::readFile(settings()), "Width=1280\r\n");
    EXPECT_EQ(stateValue("PatchedApps", "game.exe"), 1);
    EXPECT_EQ(getTrackedExecutableName(), "");
}

TEST_F(ButtonThreadsTest, PressDuringATickIsDoneAtOnce) {
    offer();
    faults::getForegroundWindow.intercept([this] {
        EXPECT_EQ(toasts.control.press(1, kNotNow).result, S_OK);
        return Desktop::kGameWindow;
    });
    onTrackingTimer(Desktop::kServiceWindow);
    EXPECT_EQ(stateValue("ToastsShown", "game.exe"), 1);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : Toast : Not now", "Brisk : increment toasts counter for game.exe",
                                        "Brisk : FPS = 60"));
}

TEST_F(ButtonThreadsTest, PressWhileTheConfigurationIsLookedForWaitsAndThenPatches) {
    offer();
    trackingState = TrackingState::WaitingApp;
    std::future<Result> pressed;
    bool waited = false;
    faults::getFileAttributes.intercept([&](const wchar_t* file) {
        if (!pressed.valid()) {
            pressed = press(1, kConfigure);
            waited = !isReady(pressed, kTemptation);
        }
        return faults::getFileAttributes.real(file);
    });
    onTrackingTimer(Desktop::kServiceWindow);
    EXPECT_TRUE(waited);
    expectDone(pressed);
    EXPECT_EQ(trackingState, TrackingState::AppWarming);
    EXPECT_EQ(testing::readFile(settings()), "Width=1280\r\n");
}

TEST_F(ButtonThreadsTest, PressDuringAnEvaluationPatchesSoThatNothingIsLeftToOffer) {
    offer();
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

TEST_F(ButtonThreadsTest, PressJustBeforeTheAnswersAreReadIsHeard) {
    offer();
    std::atomic<bool> isPressed = false;
    faults::regCreateKey.intercept([&](auto... arguments) {
        // The press itself comes here, too.
        if (!isPressed.exchange(true)) {
            EXPECT_EQ(toasts.control.press(1, kDontAskAgain).result, S_OK);
        }
        return faults::regCreateKey.real(arguments...);
    });
    finish();
    EXPECT_EQ(log.take().back(), "Brisk : areToastsAllowed = 0");
    EXPECT_THAT(toasts.events(), ElementsAre("Show 1", "Activated 1 2"));
}

TEST_F(ButtonThreadsTest, PressDuringABulkPassIsDoneAtOnce) {
    offer();
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

TEST_F(ButtonThreadsTest, HandlersDoNotWaitForARefusalThatIsBeingCounted) {
    offer();
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
    offer();
    Gate gate;
    holdNextWrite(gate);
    std::future<Result> pressed = press(1, kConfigure);
    ASSERT_TRUE(gate.waitUntilReached());
    auto handled = std::async(std::launch::async, [] {
        onMassivePatching();
        finish();
        onAppStarted(Desktop::kServiceWindow, 1001, Desktop::kGame);
    });
    EXPECT_FALSE(isReady(handled, kTemptation));
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
    offer();
    Gate gate;
    faults::regSetValue.intercept([&gate](auto...) -> LSTATUS {
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
    EXPECT_THAT(log.take(), IsSupersetOf({"Brisk : Toast : Configure Settings", "Brisk : failed to patch game.exe"}));
    EXPECT_EQ(toasts.shown().size(), 2u);
    clearToasts();
    EXPECT_TRUE(toasts.control.list().empty());
}

TEST_F(ButtonThreadsTest, PressThatWasUnderWayWhenItsToastWasClearedStillActs) {
    offer();
    showToast("Second", "", "", {{"Ok", [] { logLine("Brisk : second"); }}});
    Gate gate;
    holdNextWrite(gate);
    std::future<Result> first = press(1, kNotNow);
    ASSERT_TRUE(gate.waitUntilReached());
    // Waits in the notification system behind the first.
    std::future<Result> second = press(2, 0);
    while (toasts.control.list() != Lines{}) {
        std::this_thread::yield();
    }
    clearToasts();
    EXPECT_FALSE(isReady(second, std::chrono::milliseconds(0)));
    gate.open();
    expectDone(first);
    expectDone(second);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : Toast : Not now", "Brisk : increment toasts counter for game.exe",
                                        "Brisk : second"));
}

TEST_F(ButtonThreadsTest, ClearedToastCannotBePressed) {
    offer();
    clearToasts();
    EXPECT_THROW(toasts.control.press(1, kConfigure), std::runtime_error);
    EXPECT_EQ(testing::readFile(settings()), "Width=1920\r\n");
}

TEST_F(ButtonThreadsTest, TwoPressesOfOneToastActTwice) {
    offer();
    std::future<Result> first = std::async(std::launch::async, [this] { return toasts.control.activate(1, "1"); });
    std::future<Result> second = std::async(std::launch::async, [this] { return toasts.control.activate(1, "1"); });
    expectDone(first);
    expectDone(second);
    EXPECT_EQ(stateValue("ToastsShown", "game.exe"), 2);
    EXPECT_EQ(toasts.control.press(1, kConfigure).result, S_OK);
    EXPECT_EQ(testing::readFile(settings()), "Width=1280\r\n");
}

TEST_F(ButtonThreadsTest, DismissedToastActsWhenItIsPressedLater) {
    offer();
    toasts.control.dismiss(1, 0);
    toasts.control.dismiss(1, 2);
    finish(); // in the meantime; a new offer takes the old one's place
    EXPECT_THROW(toasts.control.press(1, kNotNow), std::runtime_error);
    toasts.control.dismiss(2, 0);
    EXPECT_EQ(toasts.control.press(2, kConfigure).result, S_OK);
    EXPECT_EQ(testing::readFile(settings()), "Width=1280\r\n");
}

TEST_F(ButtonThreadsTest, ToastManagerIsLetGoDuringAPress) {
    offer();
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

TEST_F(ButtonThreadsTest, PressesAndHandlersAtOnceLeaveTheFileWhole) {
    const std::string rest(20'000, 'x');
    constexpr int kRounds = 50;
    for (int round = 0; round < kRounds; ++round) {
        testing::writeFile(settings(), "Width=1920\r\n" + rest);
        toasts.control.reset();
        offer();
        std::future<Result> pressed = press(1, kConfigure);
        while (toasts.control.list() != Lines{}) {
            std::this_thread::yield();
        }
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
