// Buttons that are pressed when the service is about to end.
#include "StartUpFixture.h"

#include "BriskHost.h"
#include "state/UserState.h"
#include "tracking/BulkPatching.h"
#include "tracking/GameEnd.h"
#include "tracking/Gate.h"
#include "tracking/Services.h"
#include "tracking/Tracking.h"

#include <algorithm>
#include <future>
#include <stdexcept>

namespace brisk {
namespace {

using ::testing::ElementsAre;
using testing::Gate;
using testing::Lines;

class LatePressTest : public testing::StartUpFixture {
protected:
    LatePressTest() {
        writeGame();
        whenCreated = [this](HWND window) {
            EXPECT_TRUE(titleManager().isTitleSupported("", "game.exe", ""));
            titleManager().setResolution(1280, 720);
            trackingContext.executableName = "game.exe";
            note("[prepared]");
            whenPrepared(window);
        };
    }

    // Every button of every toast, on a toast of its own.
    void showButtons() {
        for (const ToastAction& button : buttons) {
            showToast("Toast", "", "", {button});
        }
    }

    void pressAll() {
        for (unsigned number = 1; number <= buttons.size(); ++number) {
            const auto result = toasts.control.press(number, 0);
            EXPECT_EQ(result.handlers, 1u);
            EXPECT_EQ(result.result, S_OK);
        }
    }

    void expectNothingDone() {
        EXPECT_EQ(testing::readFile(settings()), "Width=1920\r\n");
        EXPECT_EQ(getNumberOfToastsShown("game.exe"), 0);
        EXPECT_TRUE(areToastsAllowed());
        HKEY markers = nullptr;
        EXPECT_EQ(RegOpenKeyA(HKEY_CURRENT_USER, "SOFTWARE\\Orlan\\briskGCT\\PatchedApps", &markers),
                  ERROR_FILE_NOT_FOUND);
        EXPECT_EQ(toasts.shown().size(), buttons.size());
    }

    // What was logged and noted since the game was prepared.
    Lines recordSincePrepared() const {
        const Lines all = record();
        return {std::next(std::find(all.begin(), all.end(), "[prepared]")), all.end()};
    }

    const std::vector<ToastAction> buttons{{"Not Now", notNow},
                                           {"Don't ask again", dontAskAgain},
                                           {"Configure Settings", configureSettings},
                                           {"Read More", [] { readMore("The Game\nEnabled TANO.\n"); }}};
    std::function<void(HWND)> whenPrepared;
};

TEST_F(LatePressTest, PressAfterTheMessageLoopHasNoEffect) {
    PostQuitMessageFault.intercept([this](int exitCode) {
        showButtons();
        PostQuitMessageFault.real(exitCode);
    });
    whenPrepared = [](HWND) {};
    EXPECT_EQ(start(), 0);
    pressAll();
    EXPECT_THAT(recordSincePrepared(), ElementsAre("Brisk : finished"));
    expectNothingDone();
}

TEST_F(LatePressTest, PressAfterAFailedHandlerHasNoEffect) {
    RegOpenKeyAFault.intercept([](auto...) -> LSTATUS { throw std::runtime_error("broken"); });
    whenPrepared = [this](HWND window) {
        showButtons();
        PostMessageA(window, BRISK_RESET_PROMPT_COUNTERS, 0, 0);
    };
    EXPECT_EQ(start(), 1);
    RegOpenKeyAFault.reset();
    pressAll();
    EXPECT_THAT(recordSincePrepared(), ElementsAre("Brisk : onResetPromptCounters", "Brisk : broken"));
    expectNothingDone();
}

TEST_F(LatePressTest, PressBetweenTheQuitMessageAndTheLoopsEndActs) {
    PostQuitMessageFault.intercept([this](int exitCode) {
        showButtons();
        pressAll();
        PostQuitMessageFault.real(exitCode);
    });
    whenPrepared = [](HWND) {};
    EXPECT_EQ(start(), 0);
    EXPECT_THAT(recordSincePrepared(),
                ElementsAre("Brisk : Toast : Not now", "Brisk : increment toasts counter for game.exe",
                            "Brisk : Toast : Don't ask again", "Brisk : toasts disabled",
                            "Brisk : Toast : Configure Settings", "Brisk : 'The Game' optimized.",
                            "Brisk : patch marker set for game.exe", "Brisk : Toast : Read more", "Brisk : finished"));
    EXPECT_EQ(testing::readFile(settings()), "Width=1280\r\n");
}

TEST_F(LatePressTest, SessionsEndStopsButtonsButNoMessage) {
    whenPrepared = [this](HWND window) {
        showButtons();
        SendMessageA(window, WM_ENDSESSION, TRUE, 0);
        pressAll();
        expectNothingDone();
        PostMessageA(window, BRISK_APP_FINISHED, 6, 0x2A);
    };
    EXPECT_EQ(start(), 0);
    EXPECT_THAT(recordSincePrepared(),
                ElementsAre("Brisk : onAppFinished, p1 = 6, p2 = 0x2a",
                            "Brisk : got BRISK_APP_FINISHED message in IDLE state.", "Brisk : finished"));
}

TEST_F(LatePressTest, EndOfTheSessionThatWasCalledOffChangesNothing) {
    whenPrepared = [this](HWND window) {
        showButtons();
        Gate gate;
        RegSetValueExAFault.intercept([&gate](auto... arguments) {
            gate.pass();
            return RegSetValueExAFault.real(arguments...);
        });
        const auto refused = std::async(std::launch::async, [this] { return toasts.control.press(1, 0).result; });
        EXPECT_TRUE(gate.waitUntilReached());
        SendMessageA(window, WM_ENDSESSION, FALSE, 0);
        EXPECT_FALSE(gate.isOpen());
        gate.open();
        EXPECT_EQ(refused.wait_for(testing::kLimit), std::future_status::ready);
        EXPECT_EQ(toasts.control.press(3, 0).result, S_OK);
    };
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(getNumberOfToastsShown("game.exe"), 1);
    EXPECT_EQ(testing::readFile(settings()), "Width=1280\r\n");
}

} // namespace
} // namespace brisk
