#include "hostile/HostileFixture.h"

#include <algorithm>
#include <random>

namespace brisk::testing {
namespace {

// Windows keeps 10,000 posted messages for a thread.
constexpr unsigned kMessagesAtOnce = 2'000;

class MessageStormTest : public HostileFixture {
protected:
    static std::size_t count(const Lines& lines, const std::string& begin) {
        return static_cast<std::size_t>(std::count_if(
            lines.begin(), lines.end(), [&](const std::string& line) { return line.starts_with(begin); }));
    }

    // Ends the storm and the service: nothing is left behind. The log of it.
    Lines linesOfTheStorm() {
        // The first toast to clear brings the stand-in and its buffers along.
        const ProcessCounters after = endStorm(4);
        EXPECT_EQ(after.processHandles, before.processHandles);
        EXPECT_EQ(service.quit(), 0u);
        return log();
    }
};

TEST_F(MessageStormTest, ThousandsOfGamesThatNobodySeesLeaveNothingBehind) {
    const unsigned games = scaled(1'500, 20'000);
    startStorm();
    for (unsigned i = 0; i < games; ++i) {
        service.post(BRISK_APP_STARTED, 1001, 1);
        service.tick(3);
        service.post(BRISK_APP_FINISHED, i, i);
        if (i % (kMessagesAtOnce / 5) == 0) {
            settle();
        }
    }
    settle();
    const Lines lines = linesOfTheStorm();
    EXPECT_EQ(count(lines, "Brisk : onAppStarted, p1 = 1001, p2 = 0x1"), games);
    EXPECT_EQ(count(lines, "Brisk : switch to WAITING_APP"), games);
    // Of the real timer there may be some more.
    EXPECT_GE(count(lines, "Brisk : shouldStartTracking"), 3 * games);
    EXPECT_EQ(count(lines, "Brisk : switch to IDLE"), games);
    EXPECT_EQ(count(lines, "Brisk : insufficient data collected (0 intervals)."), games);
    EXPECT_EQ(lines.back(), "Brisk : finished");
}

TEST_F(MessageStormTest, StartsFinishesResetsAndTicksInAnyOrderAreEachAnswered) {
    std::mt19937 random(2024);
    std::size_t waiting = 0, stopped = 0, finished = 0, idle = 0, unknown = 0, resets = 0;
    bool isTracking = false;
    startStorm();
    for (unsigned i = scaled(3'000, 50'000); i > 0; --i) {
        switch (random() % 6) {
        case 0:
        case 1:
            service.post(BRISK_APP_STARTED, 1001, static_cast<LPARAM>(random()));
            ++(isTracking ? stopped : waiting);
            isTracking = !isTracking;
            break;
        case 2:
            service.post(BRISK_APP_FINISHED, 7, static_cast<LPARAM>(random()));
            ++(isTracking ? finished : idle);
            isTracking = false;
            break;
        case 3:
            service.post(BRISK_APP_STARTED, 1002, 1);
            ++(isTracking ? stopped : unknown);
            isTracking = false;
            break;
        case 4:
            service.post(BRISK_RESET_PROMPT_COUNTERS);
            ++resets;
            break;
        default:
            service.tick();
        }
        if (i % kMessagesAtOnce == 0) {
            settle();
            ++(isTracking ? finished : idle);
            isTracking = false;
        }
    }
    settle();
    ++(isTracking ? finished : idle);
    const Lines lines = linesOfTheStorm();
    EXPECT_EQ(count(lines, "Brisk : switch to WAITING_APP"), waiting);
    EXPECT_EQ(count(lines, "Brisk : stop tracking, doesn't track more than one app"), stopped);
    EXPECT_EQ(count(lines, "Brisk : insufficient data collected (0 intervals)."), finished);
    EXPECT_EQ(count(lines, "Brisk : got BRISK_APP_FINISHED message in IDLE state."), idle);
    EXPECT_EQ(count(lines, "Brisk : GameID 1002 is not supported. Skip."), unknown);
    EXPECT_EQ(count(lines, "Brisk : onResetPromptCounters"), resets);
    EXPECT_EQ(lines.back(), "Brisk : finished");
}

TEST_F(MessageStormTest, QuitIsAnsweredBehindThousandsOfMessages) {
    startStorm();
    service.suspend();
    for (unsigned i = 0; i < kMessagesAtOnce / 4; ++i) {
        service.post(BRISK_APP_STARTED, 1001, 1);
        service.post(BRISK_APP_FINISHED);
        service.tick(2);
    }
    service.post(BRISK_QUIT);
    service.resume();
    EXPECT_EQ(waitForStormsEnd(), 0u);
    printFigures({});
    const Lines lines = log();
    EXPECT_EQ(count(lines, "Brisk : onAppFinished, p1 = 0, p2 = 0"), kMessagesAtOnce / 4);
    EXPECT_EQ(lines.back(), "Brisk : finished");
}

} // namespace
} // namespace brisk::testing
