// What comes before what in the message loop, in the window procedure and at the end.
#include "StartUpFixture.h"

#include "BriskHost.h"
#include "toast/ToastManager.h"
#include "tracking/Services.h"
#include "tracking/Tracking.h"

#include <algorithm>
#include <set>

namespace brisk {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using testing::Lines;
using testing::operator+;

class MessageOrderTest : public testing::StartUpFixture {
protected:
    MessageOrderTest() { writeGame(); }

    static std::string named(const char* call, UINT message) {
        std::ostringstream text;
        text << '[' << call << " 0x" << std::hex << message << ']';
        return text.str();
    }

    // The record from a line on.
    Lines recordFrom(const std::string& line) const {
        const Lines all = record();
        return {std::find(all.begin(), all.end(), line), all.end()};
    }
};

TEST_F(MessageOrderTest, EachMessageIsTranslatedAndDispatchedBeforeTheNextIsFetched) {
    Lines steps;
    Lines expected;
    GetMessageAFault.intercept([&](MSG* message, HWND filter, UINT first, UINT last) {
        EXPECT_EQ(steps, expected);
        const BOOL found = GetMessageAFault.real(message, filter, first, last);
        if (found) {
            expected.push_back(named("TranslateMessage", message->message));
            expected.push_back(named("DispatchMessage", message->message));
        }
        return found;
    });
    TranslateMessageFault.intercept([&](const MSG* message) {
        steps.push_back(named("TranslateMessage", message->message));
        return TranslateMessageFault.real(message);
    });
    DispatchMessageAFault.intercept([&](const MSG* message) {
        steps.push_back(named("DispatchMessage", message->message));
        return DispatchMessageAFault.real(message);
    });
    whenCreated = [](HWND window) { PostMessageA(window, WM_USER + 4, 0, 0); };
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(steps, expected);
    EXPECT_THAT(steps, Contains("[DispatchMessage 0x404]"));
    EXPECT_THAT(steps, Contains("[DispatchMessage 0x401]"));
}

TEST_F(MessageOrderTest, DefaultProcedureFollowsTheServicesOwnWork) {
    CreateEventAFault.intercept([this](auto... arguments) {
        note("[CreateEvent]");
        return CreateEventAFault.real(arguments...);
    });
    PostQuitMessageFault.intercept([this](int exitCode) {
        note("[PostQuitMessage]");
        PostQuitMessageFault.real(exitCode);
    });
    DefWindowProcAFault.intercept([this](HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        static const std::set<UINT> handled{WM_CREATE,
                                            WM_COPYDATA,
                                            WM_TIMER,
                                            BRISK_QUIT,
                                            BRISK_APP_STARTED,
                                            BRISK_APP_FINISHED,
                                            BRISK_MASSIVE_PATCHING,
                                            BRISK_RESET_PROMPT_COUNTERS};
        if (handled.contains(message)) {
            note(named("DefWindowProc", message));
        }
        return DefWindowProcAFault.real(window, message, wParam, lParam);
    });
    whenCreated = [](HWND window) {
        SendMessageA(window, WM_COPYDATA, 0, 0);
        trackingState = TrackingState::WaitingApp;
        SendMessageA(window, WM_TIMER, kTrackingTimerId, 0);
        trackingState = TrackingState::Idle;
        SendMessageA(window, BRISK_APP_STARTED, 1002, 0x1F4);
        SendMessageA(window, BRISK_APP_FINISHED, 6, 0x2A);
        SendMessageA(window, BRISK_RESET_PROMPT_COUNTERS, 0, 0);
        SendMessageA(window, BRISK_MASSIVE_PATCHING, 0, 0);
    };
    EXPECT_EQ(start(), 0);
    const Lines titleInformation{"Brisk : receiveTitleInfo", "[DefWindowProc 0x4a]"};
    const Lines tick{"Brisk : shouldStartTracking", "Brisk : HWND = 0", "[DefWindowProc 0x113]"};
    const Lines game{"Brisk : onAppStarted, p1 = 1002, p2 = 0x1f4",
                     "Brisk : GameID 1002 is not supported. Skip.",
                     "[DefWindowProc 0x402]",
                     "Brisk : onAppFinished, p1 = 6, p2 = 0x2a",
                     "Brisk : got BRISK_APP_FINISHED message in IDLE state.",
                     "[DefWindowProc 0x403]"};
    const Lines reset = testing::emptyResetLines() + Lines{"[DefWindowProc 0x406]"};
    const Lines bulkPass = testing::bulkPassLines(testing::kDisplay) +
                           Lines{"Brisk : publisher: '', binary name: 'game.exe'.",
                                 "Brisk : checking path '" + toNarrow(settings()) + "'.", "Brisk : config found.",
                                 testing::notOptimalLine("1920", "1280")} +
                           testing::patchedLines("The Game", "game.exe") + Lines{"[DefWindowProc 0x405]"};
    EXPECT_THAT(recordFrom("[CreateEvent]"),
                ElementsAreArray(Lines{"[CreateEvent]", "[DefWindowProc 0x1]"} + titleInformation + tick + game +
                                 reset + bulkPass +
                                 Lines{"[PostQuitMessage]", "[DefWindowProc 0x401]", "Brisk : finished"}));
}

TEST_F(MessageOrderTest, QuitClearsTheToastsThenClosesTheEventThenEndsTheLoop) {
    HANDLE created = nullptr;
    CreateEventAFault.intercept([&](auto... arguments) { return created = CreateEventAFault.real(arguments...); });
    std::weak_ptr<ToastManager> manager;
    whenCreated = [&](HWND) {
        manager = ToastManager::instance();
        showToast("One", "", "", {});
        showToast("Two", "", "", {});
        note("[shown]");
        CloseHandleFault.intercept([&](HANDLE handle) {
            if (handle == created) {
                EXPECT_THAT(toasts.events(), ElementsAre("Show 1", "Show 2", "Hide 1", "Hide 2"));
                EXPECT_TRUE(manager.expired());
                note("[CloseHandle]");
                created = nullptr;
            }
            return CloseHandleFault.real(handle);
        });
        PostQuitMessageFault.intercept([this](int exitCode) {
            note("[PostQuitMessage " + std::to_string(exitCode) + "]");
            PostQuitMessageFault.real(exitCode);
        });
    };
    EXPECT_EQ(start(), 0);
    EXPECT_THAT(recordFrom("[shown]"),
                ElementsAre("[shown]", "[CloseHandle]", "[PostQuitMessage 0]", "Brisk : finished"));
}

} // namespace
} // namespace brisk
