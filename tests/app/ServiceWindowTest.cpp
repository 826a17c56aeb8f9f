// The hidden window, its messages and what their senders are answered.
#include "StartUpFixture.h"

#include "BriskHost.h"
#include "state/UserState.h"
#include "tracking/GameEnd.h"
#include "tracking/Services.h"
#include "tracking/Tracking.h"

#include <algorithm>

namespace brisk {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using testing::kDisplay;
using testing::Lines;
using testing::operator+;

class ServiceWindowTest : public testing::StartUpFixture {
protected:
    ServiceWindowTest() { writeGame(); }

    // Runs the service with what is done once the window exists; the lines from then on without the last.
    Lines run(const std::function<void(HWND)>& action) {
        whenCreated = [this, action](HWND window) {
            note("[created]");
            action(window);
        };
        EXPECT_EQ(start(), 0);
        Lines lines = record();
        lines.erase(lines.begin(), std::next(std::find(lines.begin(), lines.end(), "[created]")));
        EXPECT_EQ(lines.back(), "Brisk : finished");
        lines.pop_back();
        return lines;
    }
};

TEST_F(ServiceWindowTest, ClassIsRegisteredWithItsProcedureInstanceAndNameAlone) {
    RegisterClassAFault.intercept([](const WNDCLASSA* windowClass) {
        EXPECT_EQ(windowClass->style, 0u);
        EXPECT_NE(windowClass->lpfnWndProc, nullptr);
        EXPECT_EQ(windowClass->cbClsExtra, 0);
        EXPECT_EQ(windowClass->cbWndExtra, 0);
        EXPECT_EQ(windowClass->hInstance, GetModuleHandleA(nullptr));
        EXPECT_EQ(windowClass->hIcon, nullptr);
        EXPECT_EQ(windowClass->hCursor, nullptr);
        EXPECT_EQ(windowClass->hbrBackground, nullptr);
        EXPECT_EQ(windowClass->lpszMenuName, nullptr);
        EXPECT_STREQ(windowClass->lpszClassName, "BriskClass");
        return RegisterClassAFault.real(windowClass);
    });
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(RegisterClassAFault.calls(), 1u);
}

TEST_F(ServiceWindowTest, WindowIsADisabledTopLevelWindowThatIsNeverShown) {
    CreateWindowExAFault.intercept([](DWORD extendedStyle, const char* windowClass, const char* name, DWORD style,
                                      int x, int y, int width, int height, HWND parent, HMENU menu, HINSTANCE instance,
                                      void* parameter) {
        EXPECT_EQ(extendedStyle, 0u);
        EXPECT_STREQ(windowClass, "BriskClass");
        EXPECT_STREQ(name, "BriskClass");
        EXPECT_EQ(style, 0x08000000u);
        for (const int place : {x, y, width, height}) {
            EXPECT_EQ(static_cast<unsigned>(place), 0x80000000u);
        }
        EXPECT_EQ(parent, nullptr);
        EXPECT_EQ(menu, nullptr);
        EXPECT_EQ(instance, GetModuleHandleA(nullptr));
        EXPECT_EQ(parameter, nullptr);
        const HWND window = CreateWindowExAFault.real(extendedStyle, windowClass, name, style, x, y, width, height,
                                                      parent, menu, instance, parameter);
        EXPECT_EQ(GetAncestor(window, GA_PARENT), GetDesktopWindow());
        EXPECT_FALSE(IsWindowVisible(window));
        PostQuitMessage(0);
        return window;
    });
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(CreateWindowExAFault.calls(), 1u);
    DestroyWindow(FindWindowA("BriskClass", nullptr));
}

TEST_F(ServiceWindowTest, StartedEventIsSetFromTheCreationToTheQuitMessage) {
    HANDLE created = nullptr;
    CreateEventAFault.intercept([&](SECURITY_ATTRIBUTES* attributes, BOOL manual, BOOL signalled, const char* name) {
        EXPECT_EQ(attributes, nullptr);
        EXPECT_TRUE(manual);
        EXPECT_FALSE(signalled);
        EXPECT_STREQ(name, "BriskStarted");
        return created = CreateEventAFault.real(attributes, manual, signalled, name);
    });
    bool closed = false;
    CloseHandleFault.intercept([&](HANDLE handle) {
        closed |= handle == created && created;
        return CloseHandleFault.real(handle);
    });
    run([&](HWND) {
        ASSERT_NE(created, nullptr);
        EXPECT_EQ(WaitForSingleObject(created, 0), WAIT_OBJECT_0);
        EXPECT_FALSE(closed);
    });
    EXPECT_TRUE(closed);
    EXPECT_EQ(CreateEventAFault.calls(), 1u);
}

TEST_F(ServiceWindowTest, EventThatCannotBeCreatedIsNotLoggedAndNothingIsClosedButNull) {
    CreateEventAFault.fail(nullptr, ERROR_NOT_ENOUGH_MEMORY);
    DWORD error = ERROR_SUCCESS;
    DefWindowProcAFault.intercept([&error](HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        error = message == WM_CREATE ? GetLastError() : error;
        return DefWindowProcAFault.real(window, message, wParam, lParam);
    });
    std::vector<HANDLE> closed;
    EXPECT_THAT(run([&](HWND) {
                    CloseHandleFault.intercept([&](HANDLE handle) {
                        closed.push_back(handle);
                        return CloseHandleFault.real(handle);
                    });
                }),
                IsEmpty());
    EXPECT_THAT(closed, ElementsAre(nullptr));
    // Setting an event that is none would have left its own error.
    EXPECT_EQ(error, static_cast<DWORD>(ERROR_NOT_ENOUGH_MEMORY));
}

TEST_F(ServiceWindowTest, EveryMessageIsAnsweredAsByTheDefaultProcedure) {
    const UINT messages[] = {WM_USER,
                             BRISK_APP_STARTED,
                             BRISK_APP_FINISHED,
                             WM_USER + 4,
                             BRISK_MASSIVE_PATCHING,
                             BRISK_RESET_PROMPT_COUNTERS,
                             0x7FFE,
                             WM_TIMER,
                             WM_APP,
                             WM_CLOSE,
                             WM_QUERYENDSESSION,
                             WM_ENDSESSION,
                             WM_COPYDATA,
                             BRISK_QUIT};
    run([&](HWND window) {
        for (const UINT message : messages) {
            const unsigned before = DefWindowProcAFault.calls();
            DefWindowProcAFault.intercept([=](HWND to, UINT number, WPARAM wParam, LPARAM lParam) -> LRESULT {
                EXPECT_EQ(to, window);
                EXPECT_EQ(number, message);
                EXPECT_EQ(wParam, 3u);
                EXPECT_EQ(lParam, 0);
                return 4711;
            });
            EXPECT_EQ(SendMessageA(window, message, 3, 0), 4711) << std::hex << message;
            EXPECT_EQ(DefWindowProcAFault.calls(), before + 1) << std::hex << message;
        }
        DefWindowProcAFault.reset();
    });
}

TEST_F(ServiceWindowTest, MessagesThatAreNotTheServicesAndOtherTimersDoNothing) {
    trackingState = TrackingState::WaitingApp;
    EXPECT_THAT(run([](HWND window) {
                    for (const UINT message : {0x400u, 0x404u, 0x7FFEu}) {
                        PostMessageA(window, message, 1001, 5);
                    }
                    SendMessageA(window, WM_TIMER, 1, 0);
                    SendMessageA(window, WM_TIMER, static_cast<WPARAM>(-1), 0);
                }),
                IsEmpty());
    EXPECT_EQ(trackingState, TrackingState::WaitingApp);
}

TEST_F(ServiceWindowTest, TrackingTimerIsATickOfTheTracking) {
    trackingState = TrackingState::WaitingApp;
    EXPECT_THAT(run([](HWND window) { SendMessageA(window, WM_TIMER, 0, 0); }),
                ElementsAre("Brisk : shouldStartTracking", "Brisk : HWND = 0"));
}

TEST_F(ServiceWindowTest, AppMessagesReachTheirHandlersWithTheirParameters) {
    EXPECT_THAT(run([](HWND window) {
                    PostMessageA(window, BRISK_APP_STARTED, 1002, 0x1F4);
                    PostMessageA(window, BRISK_APP_FINISHED, 6, 0x2A);
                }),
                ElementsAre("Brisk : onAppStarted, p1 = 1002, p2 = 0x1f4",
                            "Brisk : GameID 1002 is not supported. Skip.", "Brisk : onAppFinished, p1 = 6, p2 = 0x2a",
                            "Brisk : got BRISK_APP_FINISHED message in IDLE state."));
}

TEST_F(ServiceWindowTest, WholeGameStopsTheTimerThatItsStartBegan) {
    EXPECT_THAT(run([](HWND window) {
                    SendMessageA(window, BRISK_APP_STARTED, 1001, 0x1F4);
                    EXPECT_EQ(trackingState, TrackingState::WaitingApp);
                    SendMessageA(window, BRISK_APP_FINISHED, 0, 0);
                    EXPECT_FALSE(KillTimer(window, 0));
                }),
                ElementsAreArray(testing::acceptedLines(1001, "0x1f4") +
                                 testing::endedLines("p1 = 0, p2 = 0", "0", "0") +
                                 Lines(2, "Brisk : get current display info.") + testing::resolutionLines(kDisplay) +
                                 Lines{testing::insufficientLine("0")}));
}

TEST_F(ServiceWindowTest, BulkMessagePatchesWhateverItsParameters) {
    EXPECT_THAT(run([](HWND window) { PostMessageA(window, BRISK_MASSIVE_PATCHING, 3, 4); }),
                ElementsAreArray(testing::bulkPassLines(kDisplay) +
                                 Lines{"Brisk : publisher: '', binary name: 'game.exe'.",
                                       "Brisk : checking path '" + toNarrow(settings()) + "'.", "Brisk : config found.",
                                       testing::notOptimalLine("1920", "1280")} +
                                 testing::patchedLines("The Game", "game.exe")));
    EXPECT_EQ(testing::readFile(settings()), "Width=1280\r\n");
    EXPECT_EQ(toasts.shown().size(), 1u);
}

TEST_F(ServiceWindowTest, ResetForgetsTheAnswersInSilence) {
    EXPECT_THAT(run([](HWND window) {
                    disallowToasts();
                    incNumberOfToastsShown("game.exe");
                    SendMessageA(window, BRISK_RESET_PROMPT_COUNTERS, 0, 0);
                }),
                ElementsAre("Brisk : onResetPromptCounters"));
    EXPECT_TRUE(areToastsAllowed());
    EXPECT_EQ(getNumberOfToastsShown("game.exe"), 0);
}

TEST_F(ServiceWindowTest, ResetWithoutARefusalOfAllOffersStillResetsTheCounters) {
    EXPECT_THAT(run([](HWND window) {
                    incNumberOfToastsShown("game.exe");
                    SendMessageA(window, BRISK_RESET_PROMPT_COUNTERS, 0, 0);
                }),
                ElementsAreArray(testing::resetLines()));
    EXPECT_EQ(getNumberOfToastsShown("game.exe"), 0);
}

TEST_F(ServiceWindowTest, CountersThatCannotBeResetAreLogged) {
    EXPECT_THAT(run([](HWND window) {
                    disallowToasts();
                    incNumberOfToastsShown("game.exe");
                    RegDeleteTreeAFault.fail(ERROR_ACCESS_DENIED);
                    SendMessageA(window, BRISK_RESET_PROMPT_COUNTERS, 0, 0);
                }),
                ElementsAre("Brisk : onResetPromptCounters",
                            "Brisk : resetToastsShown : RegDeleteTree failed. Error 5.",
                            "Brisk : resetToastsShown couldn't delete tree"));
    EXPECT_TRUE(areToastsAllowed());
}

TEST_F(ServiceWindowTest, PressDuringAResetIsForgottenWithTheRest) {
    run([this](HWND window) {
        showToast("Offer", "", "", {{"Not Now", notNow}, {"Don't ask again", dontAskAgain}});
        RegOpenKeyAFault.intercept([this](auto... arguments) {
            EXPECT_EQ(toasts.control.press(1, 1).result, S_OK);
            return RegOpenKeyAFault.real(arguments...);
        });
        SendMessageA(window, BRISK_RESET_PROMPT_COUNTERS, 0, 0);
    });
    EXPECT_TRUE(areToastsAllowed());
}

TEST_F(ServiceWindowTest, TitleInformationIsReceived) {
    EXPECT_THAT(run([](HWND window) {
                    std::string text = "[1, 2";
                    COPYDATASTRUCT data{BRISK_TITLE_INFO_TAG, static_cast<DWORD>(text.size()), text.data()};
                    SendMessageA(window, WM_COPYDATA, BRISK_TITLE_INFO_TAG, reinterpret_cast<LPARAM>(&data));
                }),
                ElementsAre("Brisk : receiveTitleInfo", "Brisk : got exception while processing titles info"));
}

TEST_F(ServiceWindowTest, SecondQuitMessageClosesNothingTwice) {
    std::vector<HANDLE> closed;
    HANDLE created = nullptr;
    CreateEventAFault.intercept([&](auto... arguments) { return created = CreateEventAFault.real(arguments...); });
    EXPECT_THAT(run([&](HWND window) {
                    CloseHandleFault.intercept([&](HANDLE handle) {
                        closed.push_back(handle);
                        return CloseHandleFault.real(handle);
                    });
                    PostMessageA(window, BRISK_QUIT, 0, 0);
                }),
                IsEmpty());
    EXPECT_EQ(std::count(closed.begin(), closed.end(), created), 1);
    EXPECT_EQ(PostQuitMessageFault.calls(), 2u);
}

} // namespace
} // namespace brisk
