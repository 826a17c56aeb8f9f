// The end of the process while the user's consent is being carried out. Each process of its own.
#include "StartUpFixture.h"

#include "BriskHost.h"
#include "tracking/GameEnd.h"
#include "tracking/Gate.h"
#include "tracking/Services.h"

#include <cstdlib>
#include <stdexcept>
#include <thread>

namespace brisk {
namespace {

using ::testing::ElementsAre;
using testing::Gate;
using testing::Lines;

constexpr char kReportVariable[] = "BRISK_TEST_REPORT";

// Not destroyed: they are used while the process ends.
Gate& held = *new Gate;
Gate& ending = *new Gate;

class ProcessEndTest : public testing::StartUpFixture {
protected:
    ProcessEndTest() {
        // The process that a death test starts comes here, too, and keeps the first one's file.
        char path[MAX_PATH] = "";
        if (GetEnvironmentVariableA(kReportVariable, path, MAX_PATH) == 0) {
            SetEnvironmentVariableA(kReportVariable, (folder.narrow() + "\\report.txt").c_str());
            ownsReport = true;
            GetEnvironmentVariableA(kReportVariable, path, MAX_PATH);
        }
        report = path;
        ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    }

    ~ProcessEndTest() override {
        if (ownsReport) {
            SetEnvironmentVariableA(kReportVariable, nullptr);
        }
    }

    // Runs the service until the message comes; the patch that the user asked for is held in the middle then, and goes
    // on only when the service has begun to end.
    [[noreturn]] void endDuringAPatch(UINT message) {
        writeDatabase(R"json([{"config_type": "reg", "title_name": "The Game", "binary_name": "game.exe",
                               "config_locations": ["HKEY_CURRENT_USER/Software"],
                               "config_fields": [{"key": "A", "value": 1}, {"key": "B", "value": 2}]}])json");
        RegSetValueExAFault.intercept([this](HKEY key, const char* name, auto... arguments) {
            held.pass();
            std::ofstream(report, std::ios::app | std::ios::binary) << "[" << name << "]\n";
            return RegSetValueExAFault.real(key, name, arguments...);
        });
        PostQuitMessageFault.intercept([](int exitCode) {
            ending.open();
            PostQuitMessageFault.real(exitCode);
        });
        RegOpenKeyAFault.intercept([](auto...) -> LSTATUS {
            ending.open();
            throw std::runtime_error("broken");
        });
        DispatchMessageAFault.intercept([](const MSG* next) {
            if (next->message == WM_ENDSESSION) {
                ending.open();
            }
            return DispatchMessageAFault.real(next);
        });
        // The session ends as soon as the service has given its answer.
        DefWindowProcAFault.intercept([this](HWND window, UINT handled, WPARAM wParam, LPARAM lParam) {
            if (handled == WM_ENDSESSION) {
                std::ofstream(report, std::ios::app | std::ios::binary) << "[answer]\n";
                TerminateProcess(GetCurrentProcess(), 0);
            }
            return DefWindowProcAFault.real(window, handled, wParam, lParam);
        });
        whenCreated = [this, message](HWND window) {
            ASSERT_TRUE(titleManager().isTitleSupported("", "game.exe", ""));
            showToast("Offer", "", "", {{"Configure Settings", [] { patchTitle("game.exe"); }}});
            // Neither thread is waited for: the process ends first.
            new std::thread([this] { toasts.control.press(1, 0); });
            held.waitUntilReached();
            // From now on to a file, which the other process reads.
            OutputDebugStringAFault.intercept(
                [path = report](const char* text) { std::ofstream(path, std::ios::app | std::ios::binary) << text; });
            PostMessageA(window, message, TRUE, 0);
        };
        new std::thread([] {
            while (!ending.isOpen()) {
                Sleep(1);
            }
            Sleep(static_cast<DWORD>(testing::kGracePeriod.count()));
            held.open();
        });
        std::exit(start());
    }

    // What was written and logged.
    Lines reported() const { return testing::splitLines(testing::readFile(report)); }

    std::string report;
    bool ownsReport = false;
};

// The marker is written last.
TEST_F(ProcessEndTest, PatchIsWrittenToItsEndBeforeTheServiceQuits) {
    EXPECT_EXIT(endDuringAPatch(BRISK_QUIT), ::testing::ExitedWithCode(0), "");
    EXPECT_THAT(reported(), ElementsAre("[A]", "[B]", "Brisk : 'The Game' optimized.", "[game.exe]",
                                        "Brisk : patch marker set for game.exe", "Brisk : finished"));
}

TEST_F(ProcessEndTest, PatchIsWrittenToItsEndBeforeAFailedHandlerEndsTheService) {
    EXPECT_EXIT(endDuringAPatch(BRISK_RESET_PROMPT_COUNTERS), ::testing::ExitedWithCode(1), "");
    EXPECT_THAT(reported(), ElementsAre("Brisk : onResetPromptCounters", "[A]", "[B]", "Brisk : 'The Game' optimized.",
                                        "[game.exe]", "Brisk : patch marker set for game.exe", "Brisk : broken"));
}

TEST_F(ProcessEndTest, PatchIsWrittenToItsEndBeforeTheUsersSessionEnds) {
    EXPECT_EXIT(endDuringAPatch(WM_ENDSESSION), ::testing::ExitedWithCode(0), "");
    EXPECT_THAT(reported(), ElementsAre("[A]", "[B]", "Brisk : 'The Game' optimized.", "[game.exe]",
                                        "Brisk : patch marker set for game.exe", "[answer]"));
}

} // namespace
} // namespace brisk
