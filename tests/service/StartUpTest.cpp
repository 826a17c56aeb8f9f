#include "service/ServiceFixture.h"
#include "support/JsonErrors.h"

namespace brisk::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

constexpr char kOneTitle[] = R"([{"config_type": "txt", "id": 7, "binary_name": "game.exe"}])";

class StartUpTest : public ServiceFixture {};

TEST_F(StartUpTest, StartsAndQuitsWithEveryLineInOrder) {
    Service service(kOneTitle);
    service.startAndWait();
    EXPECT_EQ(service.quit(), 0u);
    EXPECT_THAT(service.log(), ElementsAreArray(startLines() + Lines{"Brisk : finished"}));
    EXPECT_THAT(shownToasts(), IsEmpty());
}

// The only test that knows the version: hosts read it in the log and in the identity of the toasts.
TEST_F(StartUpTest, HostsKnowTheServiceByItsVersion) {
    Service service(kOneTitle);
    service.startAndWait();
    service.post(BRISK_MASSIVE_PATCHING);
    toasts.waitForShows(1);
    service.quit();
    EXPECT_EQ(service.log().front(), "Brisk 1.09 : started");
    EXPECT_THAT(standin::readRecord(record), Contains("CreateToastNotifierWithId Orlan.Experience.Brisk.1.09"));
}

TEST_F(StartUpTest, ParametersAreNotLoggedToTheFile) {
    Service service(kOneTitle);
    service.startAndWait("-nw 1 -fps 60");
    service.quit();
    EXPECT_THAT(service.log(), ElementsAreArray(startLines() + Lines{"Brisk : finished"}));
}

TEST_F(StartUpTest, HiddenWindowIsADisabledTopLevelWindowNamedAsItsClass) {
    Service service(kOneTitle);
    service.startAndWait();
    const HWND window = service.window();
    char name[32] = "";
    GetWindowTextA(window, name, sizeof name);
    EXPECT_STREQ(name, "BriskClass");
    EXPECT_FALSE(IsWindowVisible(window));
    EXPECT_FALSE(IsWindowEnabled(window));
    EXPECT_EQ(GetAncestor(window, GA_PARENT), GetDesktopWindow());
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    EXPECT_EQ(owner, service.processId());
    service.quit();
    EXPECT_EQ(service.window(), nullptr);
}

TEST_F(StartUpTest, StartedEventIsSetWhileTheServiceRunsAndGoneAfterwards) {
    Service service(kOneTitle);
    service.startAndWait();
    {
        UniqueHandle started;
        waitUntil("the started event", [&started] {
            started.reset(OpenEventA(SYNCHRONIZE, FALSE, "BriskStarted"));
            return started != nullptr;
        });
        // Manual reset: it stays set.
        EXPECT_EQ(WaitForSingleObject(started.get(), 10'000), WAIT_OBJECT_0);
        EXPECT_EQ(WaitForSingleObject(started.get(), 0), WAIT_OBJECT_0);
    }
    service.quit();
    EXPECT_EQ(UniqueHandle(OpenEventA(SYNCHRONIZE, FALSE, "BriskStarted")), nullptr);
}

TEST_F(StartUpTest, SecondInstanceLogsThatOneIsRunningAndExitsWithOne) {
    Service first(kOneTitle);
    first.startAndWait();
    Service second(kOneTitle);
    second.start();
    EXPECT_EQ(second.waitForEnd(), 1u);
    EXPECT_THAT(second.log(), ElementsAre(startedLine(), "Brisk : running already. Exiting."));
    EXPECT_TRUE(first.isRunning());
    EXPECT_EQ(first.quit(), 0u);
}

// A start that finds a service missing says what it found and ends without a window.
struct FailedLoad {
    std::string name;
    const char* database;
    Lines lines;
    std::uint32_t exitCode;
};

class UnusableDatabaseTest : public ServiceFixture, public ::testing::WithParamInterface<FailedLoad> {};

TEST_P(UnusableDatabaseTest, EndsWithoutAWindow) {
    Service service(GetParam().database);
    service.start();
    EXPECT_EQ(service.waitForEnd(), GetParam().exitCode);
    EXPECT_THAT(service.log(), ElementsAreArray(GetParam().lines));
}

Lines linesWithoutTitles(const Lines& loaderLines) {
    return startLines({.database = loaderLines}) + Lines{"Brisk : finished"};
}

INSTANTIATE_TEST_SUITE_P(
    StartUp, UnusableDatabaseTest,
    ::testing::Values(FailedLoad{"Missing", nullptr, linesWithoutTitles({"Brisk : unable to open title database."}), 0},
                      FailedLoad{"Null", "null", linesWithoutTitles({"Brisk : unable to parse title database."}), 0},
                      FailedLoad{"Object", R"({"id": 1})",
                                 linesWithoutTitles({"Brisk : unable to parse title database."}), 0},
                      FailedLoad{"Empty", "[]", linesWithoutTitles({}), 0},
                      FailedLoad{"UnknownType", R"([{"config_type": "text", "binary_name": "game.exe"}])",
                                 linesWithoutTitles({"Brisk : unknown adaper type '\"text\"'."}), 0},
                      FailedLoad{"Unterminated", "[1, 2", {startedLine(), "Brisk : " + jsonErrorOf("[1, 2")}, 1},
                      FailedLoad{"EmptyFile", "", {startedLine(), "Brisk : " + jsonErrorOf("")}, 1},
                      FailedLoad{"LocationThatIsANumber",
                                 R"([{"config_type": "txt", "config_locations": [5]}])",
                                 {startedLine(), "Brisk : " + noTextErrorOf("5")},
                                 1}),
    [](const ::testing::TestParamInfo<FailedLoad>& load) { return load.param.name; });

TEST_F(StartUpTest, RegistryThatCannotBeWrittenEndsTheServiceQuietly) {
    // No key that outlives the logon can be made below a volatile one.
    HKEY parent = nullptr;
    ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, "SOFTWARE\\Orlan", 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS,
                              nullptr, &parent, nullptr),
              ERROR_SUCCESS);
    RegCloseKey(parent);
    Service service(kOneTitle);
    service.start();
    EXPECT_EQ(service.waitForEnd(), 0u);
    EXPECT_THAT(service.log(),
                ElementsAreArray(startLines({.registry = "Brisk : access to the Windows Registry not granted."}) +
                                 Lines{"Brisk : finished"}));
}

TEST_F(StartUpTest, NumberBeyond32BitsEndsTheProcessBeforeTheStartLine) {
    Service service(kOneTitle);
    service.start("-nw 99999999999");
    EXPECT_EQ(service.waitForEnd(), 1u);
    EXPECT_THAT(service.log(), IsEmpty());
}

TEST_F(StartUpTest, SecondQuitMessageIsHarmless) {
    Service service(kOneTitle);
    service.startAndWait();
    service.suspend();
    service.post(BRISK_QUIT);
    service.post(BRISK_QUIT);
    service.resume();
    EXPECT_EQ(service.waitForEnd(), 0u);
    EXPECT_THAT(service.logFrom(startLines().size()), ElementsAre("Brisk : finished"));
}

TEST_F(StartUpTest, LogIsAppendedAcrossRestarts) {
    Service service(kOneTitle);
    const Lines run = startLines() + Lines{"Brisk : finished"};
    for (int i = 0; i < 2; ++i) {
        service.startAndWait();
        service.quit();
    }
    EXPECT_THAT(service.log(), ElementsAreArray(run + run));
}

TEST_F(StartUpTest, ResetForgetsTheAnswersAndLogsWhatWasNotThere) {
    Service service(kOneTitle);
    service.startAndWait();
    service.post(BRISK_RESET_PROMPT_COUNTERS);
    service.waitForLog(emptyResetLines().back());
    HKEY key = nullptr;
    RegCreateKeyExA(HKEY_CURRENT_USER, "SOFTWARE\\Orlan\\briskGCT\\ToastsShown", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                    &key, nullptr);
    const DWORD count = 3;
    RegSetValueExA(key, "game.exe", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&count), sizeof count);
    RegCloseKey(key);
    service.post(BRISK_RESET_PROMPT_COUNTERS);
    service.quit();
    EXPECT_THAT(service.logFrom(startLines().size()),
                // The second time there are counts, which go although the permission is not there.
                ElementsAreArray(emptyResetLines() + resetLines() + Lines{"Brisk : finished"}));
    EXPECT_EQ(stateValue("ToastsShown", "game.exe"), -1);
}

TEST_F(StartUpTest, OtherMessagesAndOtherTimersHaveNoEffect) {
    Service service(kOneTitle);
    service.startAndWait();
    service.post(WM_USER + 4, 1, 2);
    service.post(WM_USER, 1, 2);
    service.post(0x7FFE, 1, 2);
    service.tick(); // idle
    EXPECT_EQ(SendMessageA(service.window(), WM_USER + 4, 1, 2), 0);
    service.suspend();
    service.post(BRISK_APP_STARTED, 7, 1);
    service.post(WM_TIMER, 1, 0); // a tick would look for the game
    service.post(BRISK_QUIT);
    service.resume();
    EXPECT_EQ(service.waitForEnd(), 0u);
    EXPECT_THAT(service.logFrom(startLines().size()),
                ElementsAreArray(acceptedLines(7, "0x1") + Lines{"Brisk : finished"}));
}

TEST_F(StartUpTest, TitleInformationIsDiscardedAndItsSenderGetsTheDefaultAnswer) {
    Service service(kOneTitle);
    service.startAndWait();
    EXPECT_EQ(service.sendTitleInfo(0x404, 0x404, R"([{"id": 8, "config_type": "txt", "binary_name": "b.exe"}])"), 0);
    EXPECT_EQ(service.sendTitleInfo(0x404, 0x404, "[1, 2"), 0);
    EXPECT_EQ(service.sendTitleInfo(0x404, 0x404, ""), 0);
    // A sender that gives its own window, as is usual, is not understood.
    EXPECT_EQ(service.sendTitleInfo(reinterpret_cast<WPARAM>(GetDesktopWindow()), 0x404, "[1, 2"), 0);
    service.post(BRISK_APP_STARTED, 8, 1);
    service.quit();
    EXPECT_THAT(service.logFrom(startLines().size()),
                ElementsAre("Brisk : receiveTitleInfo", "Brisk : receiveTitleInfo",
                            "Brisk : got exception while processing titles info", "Brisk : receiveTitleInfo",
                            "Brisk : got exception while processing titles info", "Brisk : receiveTitleInfo",
                            "Brisk : onAppStarted, p1 = 8, p2 = 0x1", "Brisk : GameID 8 is not supported. Skip.",
                            "Brisk : finished"));
}

} // namespace
} // namespace brisk::testing
