#include "hostile/HostileFixture.h"

#include <algorithm>

namespace brisk::testing {
namespace {

// The thousand is played in full runs.
constexpr unsigned kWarmUp = 20;

class GameLeaksTest : public HostileFixture {
protected:
    void startGames() { service.startAndWait("-nw 2 -nt 3 -nn 1 -nv 4 -fps 40"); }

    // How often the service has asked for a runtime class. Wine's combase keeps one registry key open each time.
    unsigned countActivations() const {
        const auto lines = standin::readRecord(record);
        return static_cast<unsigned>(std::count_if(lines.begin(), lines.end(), [](const std::string& line) {
            return line.starts_with("DllGetActivationFactory ");
        }));
    }

    void beginCounting() {
        settle();
        toasts.waitUntilIdle(); // the stand-in's threads are there from now on
        activationsBefore = countActivations();
        beginStorm();
    }

    // Everything is as before but the handles of processes and registry keys that were kept on purpose.
    void expectKept(unsigned processes, unsigned keys) {
        settle();
        toasts.waitUntilIdle();
        // The thread that served the last command may be on its way out.
        waitUntil("the end of the stand-in's threads",
                  [this] { return readCounters(service.processId()).threads <= before.threads; });
        // What the heap holds ready for the next toast differs by up to 0.8 MB from count to count with Wine 10,
        // whatever the number of games; a megabyte in a thousand games is 1 KB a game.
        const ProcessCounters after = endStorm(1);
        EXPECT_EQ(after.processHandles, before.processHandles + processes);
        EXPECT_EQ(after.keyHandles, before.keyHandles + keys + countActivations() - activationsBefore);
        // A lock makes its semaphore when two threads first meet at it.
        EXPECT_LE(after.otherHandles, before.otherHandles + 10);
        EXPECT_LE(after.gdiObjects, before.gdiObjects);
        EXPECT_LE(after.windows, before.windows);
    }

    // A game that is offered, and what the user does then.
    void playAndAnswer(const FakeGame& game) {
        play(game);
        toasts.waitForShows(++shows);
        switch (shows % 5) {
        case 0:
            toasts.press(shows, 0);
            writeFile(settings(), kSettings);
            break;
        case 1:
        case 2:
            toasts.press(shows, shows % 5);
            service.post(BRISK_RESET_PROMPT_COUNTERS);
            break;
        case 3:
            toasts.dismiss(shows, 2);
            break;
        default: // left on the screen until the next game takes it away
            break;
        }
        if (shows % 50 == 0) {
            forgetLog();
        }
    }

    void forgetLog() const {
        // Not while the service has it open.
        waitUntil("the log's removal", [this] {
            std::error_code error;
            std::filesystem::remove(service.logFile(), error);
            return !error;
        });
    }

    unsigned shows = 0;
    unsigned activationsBefore = 0;
};

TEST_F(GameLeaksTest, GameThatOutlivesItsTrackingKeepsOneProcessHandle) {
    const unsigned games = scaled(300, 1000);
    startGames();
    FakeGame game(program);
    for (unsigned i = 0; i < kWarmUp; ++i) {
        playAndAnswer(game);
    }
    const long objects = toasts.liveObjects();
    beginCounting();
    for (unsigned i = 0; i < games; ++i) {
        playAndAnswer(game);
    }
    expectKept(games, 0);
    EXPECT_EQ(toasts.liveObjects(), objects);
    EXPECT_EQ(service.quit(), 0u);
}

TEST_F(GameLeaksTest, GameThatEndsWhileItIsTrackedKeepsNoHandle) {
    startGames();
    for (unsigned i = 0, games = scaled(20, 300); i < games + 2; ++i) {
        if (i == 2) {
            beginCounting();
        }
        FakeGame game(program);
        announceWithTicks(game, 2);
        service.waitForLog("Brisk : switch to APP_WARMING");
        forgetLog();
        game.die();
        service.tick(); // notices
        settle();
    }
    expectKept(0, 0);
    EXPECT_EQ(service.quit(), 0u);
}

TEST_F(GameLeaksTest, GameAbandonedForASecondOneKeepsOneProcessHandle) {
    const unsigned games = scaled(200, 1000);
    startGames();
    FakeGame game(program);
    for (unsigned i = 0; i < games + kWarmUp; ++i) {
        if (i == kWarmUp) {
            beginCounting();
        }
        announceWithTicks(game, 2);
        service.post(BRISK_APP_STARTED, 1001, 1);
        settle();
    }
    expectKept(games, 0);
    EXPECT_EQ(service.quit(), 0u);
}

TEST_F(GameLeaksTest, EveryLookForARegistryTitleKeepsOneKeyHandle) {
    constexpr char kGameKey[] = "Software\\Brackwater Games\\Starlit Harbour";
    RegistryKey key;
    ASSERT_EQ(
        RegCreateKeyExA(HKEY_CURRENT_USER, kGameKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, key.receive(), nullptr),
        ERROR_SUCCESS);
    setDatabase(R"([{"config_type": "reg", "binary_name": "StarlitHarbour.exe",
        "config_locations": ["HKEY_CURRENT_USER/Software/Brackwater Games/Starlit Harbour"],
        "config_fields": [{"key": "Width", "meta": "width"}]}])");
    service.startAndWait();
    const unsigned passes = scaled(200, 1000);
    for (unsigned i = 0; i < passes + kWarmUp; ++i) {
        if (i == kWarmUp) {
            beginCounting();
        }
        service.post(BRISK_MASSIVE_PATCHING);
        toasts.waitForShows(i + 1);
    }
    expectKept(0, passes);
    EXPECT_EQ(service.quit(), 0u);
    RegDeleteTreeA(HKEY_CURRENT_USER, "Software\\Brackwater Games");
}

TEST_F(GameLeaksTest, ToastIsHeldUntilItIsAnsweredOrCleared) {
    startGames();
    FakeGame game(program);
    play(game);
    toasts.waitForShows(1);
    EXPECT_GT(toasts.liveObjects(), 0);
    toasts.dismiss(1, 2); // to the notification centre, where its buttons can still be pressed
    EXPECT_GT(toasts.liveObjects(), 0);
    announce(game); // takes it away
    settle();
    toasts.waitUntilIdle();
    EXPECT_EQ(toasts.liveObjects(), 0);
    play(game);
    toasts.waitForShows(2);
    toasts.press(2, 1);
    toasts.waitUntilIdle();
    EXPECT_EQ(toasts.liveObjects(), 0);
    EXPECT_EQ(service.quit(), 0u);
}

} // namespace
} // namespace brisk::testing
