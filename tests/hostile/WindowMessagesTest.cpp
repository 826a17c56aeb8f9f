#include "hostile/HostileFixture.h"

#include <dde.h>

namespace brisk::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

constexpr UINT kLastMessage = 0xFFFF;
constexpr UINT kSystemTimer = 0x118; // the system's own timers: the caret and the like

// Not posted here:
// - WM_QUIT, which ends the message loop, and BRISK_QUIT, which is asked to;
// - WM_CLOSE, which destroys the window: it has a test of its own;
// - the service's other messages, which log; they have a test of their own, too.
// WM_DESTROY and WM_NCDESTROY are posted: a message alone destroys nothing.
bool isLeftOut(UINT message) {
    return message == WM_QUIT || message == WM_CLOSE || (message >= BRISK_QUIT && message <= BRISK_APP_FINISHED) ||
           message == BRISK_MASSIVE_PATCHING || message == BRISK_RESET_PROMPT_COUNTERS;
}

struct Parameters {
    WPARAM wParam;
    LPARAM lParam;
};

class WindowMessagesTest : public HostileFixture {
protected:
    // Posts every message; those with a pointer, which can only be sent, are collected.
    std::vector<UINT> postEvery(const Parameters& parameters) {
        std::vector<UINT> refused;
        const HWND window = service.window();
        for (UINT message = 0; message <= kLastMessage; ++message) {
            if (isLeftOut(message)) {
                continue;
            }
            // lParam is the address of a function. Windows calls it only where the process has set such a timer, Wine
            // always.
            const bool isTimer = message == WM_TIMER || message == kSystemTimer;
            if (!PostMessageA(window, message, parameters.wParam, isTimer ? 0 : parameters.lParam)) {
                // Those of DDE carry data, without which Wine refuses them with one error or another.
                if (message < WM_DDE_FIRST || message > WM_DDE_LAST) {
                    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_MESSAGE_SYNC_ONLY)) << message;
                }
                refused.push_back(message);
            }
            if (message % 4096 == 0) {
                settle();
            }
        }
        settle();
        return refused;
    }

    static Lines withoutSettling(Lines lines) {
        std::erase_if(lines, [](const std::string& line) {
            return line.starts_with("Brisk : onAppFinished, p1 = 1000") ||
                   line == "Brisk : got BRISK_APP_FINISHED message in IDLE state.";
        });
        return lines;
    }
};

TEST_F(WindowMessagesTest, EveryForeignMessageWithOddParametersIsPassedOnAndHasNoEffect) {
    startStorm();
    std::vector<UINT> refused;
    for (const Parameters& parameters :
         {Parameters{0, 0}, Parameters{~WPARAM{0}, -1}, Parameters{0x5A5A5A5A5A5A5A5A, 0x123456789ABCDEF}}) {
        refused = postEvery(parameters);
        ASSERT_NE(service.window(), nullptr);
    }
    std::printf("figures: %zu messages with pointers were sent\n", refused.size());
    // Room for whatever structure they point at.
    static char zeroes[65536];
    for (const UINT message : refused) {
        DWORD_PTR answer = 0;
        SetLastError(ERROR_SUCCESS);
        // Wine cannot carry them all to another process. Nothing may hang.
        SendMessageTimeoutA(service.window(), message, 0, reinterpret_cast<LPARAM>(zeroes), SMTO_NORMAL, 60'000,
                            &answer);
        EXPECT_NE(GetLastError(), static_cast<DWORD>(ERROR_TIMEOUT)) << message;
    }
    settle();
    endStorm(4);
    EXPECT_EQ(service.quit(), 0u);
    // A WM_COPYDATA among the sent ones.
    EXPECT_THAT(withoutSettling(log()), ElementsAre("Brisk : receiveTitleInfo", "Brisk : finished"));
}

TEST_F(WindowMessagesTest, ServicesOwnMessagesWithOddParametersAreTakenFor32BitNumbers) {
    startStorm();
    service.suspend();
    service.post(BRISK_APP_STARTED, ~WPARAM{0}, -1);
    service.post(BRISK_APP_FINISHED, ~WPARAM{0}, -1);
    service.post(BRISK_RESET_PROMPT_COUNTERS, ~WPARAM{0}, -1);
    service.post(BRISK_APP_STARTED, 0x5A5A5A5A00000000 + 1001, 0x123456789ABCDEF);
    service.post(BRISK_APP_FINISHED, 0x5A5A5A5A5A5A5A5A, 0x123456789ABCDEF);
    service.post(BRISK_QUIT, ~WPARAM{0}, -1);
    service.resume();
    EXPECT_EQ(waitForStormsEnd(), 0u);
    printFigures({});
    EXPECT_THAT(log(),
                ElementsAreArray(Lines{"Brisk : onAppStarted, p1 = 4294967295, p2 = 0xffffffff",
                                       "Brisk : GameID 4294967295 is not supported. Skip.",
                                       "Brisk : onAppFinished, p1 = 18446744073709551615, p2 = 0xffffffffffffffff",
                                       "Brisk : got BRISK_APP_FINISHED message in IDLE state."} +
                                 emptyResetLines() + acceptedLines(1001, "0x89abcdef") +
                                 endedLines("p1 = 6510615555426900570, p2 = 0x123456789abcdef", "0", "0") +
                                 Lines(2, "Brisk : get current display info.") + resolutionLines(display()) +
                                 Lines{insufficientLine("0"), "Brisk : finished"}));
}

// As every message, WM_CLOSE goes to DefWindowProc, and a disabled window is no exception there: it is destroyed. The
// message loop goes on without it. Such a service is out of the host's reach and no longer counts as running.
TEST_F(WindowMessagesTest, ClosedWindowLeavesAProcessBesideWhichAnotherCanStart) {
    service.startAndWait();
    const DWORD thread = GetWindowThreadProcessId(service.window(), nullptr);
    service.post(WM_CLOSE);
    waitUntil("the window's end", [this] { return service.window() == nullptr; });
    Service second(R"([{"config_type": "txt", "id": 7, "binary_name": "game.exe"}])");
    second.startAndWait();
    EXPECT_EQ(second.quit(), 0u);
    EXPECT_THAT(second.log(), ElementsAreArray(startLines() + Lines{"Brisk : finished"}));
    EXPECT_TRUE(service.isRunning());
    EXPECT_NE(UniqueHandle(OpenEventA(SYNCHRONIZE, FALSE, BRISK_STARTED_EVENT)), nullptr);
    // Only the thread can still be asked to end.
    EXPECT_TRUE(PostThreadMessageA(thread, WM_QUIT, 0, 0));
    EXPECT_EQ(service.waitForEnd(), 0u);
    EXPECT_THAT(service.log(), ElementsAreArray(startLines() + Lines{"Brisk : finished"}));
}

TEST_F(WindowMessagesTest, PostedEndOfTheMessageLoopEndsTheServiceInGoodOrder) {
    service.startAndWait();
    service.post(WM_QUIT, 5);
    EXPECT_EQ(service.waitForEnd(), 0u);
    EXPECT_THAT(service.log(), ElementsAreArray(startLines() + Lines{"Brisk : finished"}));
}

} // namespace
} // namespace brisk::testing
