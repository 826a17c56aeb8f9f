// The service's own logs: every verdict from a log that it has just written, which is the one in `logs`, too. With
// BRISK_RENEW_LOGS in the environment the test writes those anew.
#include "service/GameFixture.h"
#include "support/Places.h"
#include "support/Processes.h"
#include "support/kestrel/KestrelStandinControl.h"
#include "tools/log/Verdicts.h"

#include <aclapi.h>

#include <cstdlib>
#include <regex>

namespace brisk::testing {
namespace {

using ::testing::ElementsAreArray;

std::string replaced(std::string text, const std::string& what, const std::string& with) {
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += with.size()) {
        text.replace(at, what.size(), with);
    }
    return text;
}

class ServiceLogsTest : public GameFixture {
protected:
    // Compares the log with the one that is kept, and its verdicts with the expected ones.
    void check(const std::string& name) { check(name, readFile(service.logFile())); }

    void check(const std::string& name, const std::string& log) const {
        ASSERT_TRUE(expectedVerdicts().contains(name)) << name;
        EXPECT_THAT(verdictsOf(log), ElementsAreArray(expectedVerdicts().at(name)));
        const std::filesystem::path kept = place(BRISK_LOGS) / (name + ".log");
        if (std::getenv("BRISK_RENEW_LOGS")) {
            writeFile(kept, generalized(log));
        }
        EXPECT_EQ(generalized(log), readFile(kept)) << "BRISK_RENEW_LOGS=1 writes it anew";
    }

    // Without what differs from run to run and from machine to machine.
    std::string generalized(std::string log) const {
        log = replaced(log, "\r\n", "\n");
        log = replaced(log, service.folder().string(), "C:\\Brisk");
        log = replaced(log, machine.narrow(), "C:\\Machine");
        const auto replace = [&log](const char* pattern, const char* with) {
            log = std::regex_replace(log, std::regex(pattern), with);
        };
        if (gameProcess != 0) {
            replace((toHexadecimal(gameProcess) + "\\b").c_str(), "0xABC");
        }
        replace("PID = 0x[0-9a-f]+", "PID = 0xd0");
        replace("instead of PID 0x[0-9a-f]+", "instead of PID 0xd0");
        replace("HWND = 0x[0-9a-f]+", "HWND = 0x10062");
        replace("0xABC", "0x11c");
        replace("found [0-9]+ display modes", "found 60 display modes");
        replace("aspect ratio: -?nan.*", "aspect ratio: -nan(ind)");
        return log;
    }

    void useDatabase(const std::string& change, const std::string& with) const {
        std::string text = readFile(service.folder() / "titles_db.json");
        ASSERT_NE(text.find(change), std::string::npos);
        writeFile(service.folder() / "titles_db.json", replaced(text, change, with));
    }

    void useCondition(const std::string& key) const {
        useDatabase("\"config_fields\"", "\"patch_if\": [ { \"key\": \"(" + key +
                                             "=)(\\\\w+)()\", \"presence\": [ \"On\" ] } ], "
                                             "\"config_fields\"");
    }

    // A game's whole life in one go, without a tick of the real timer.
    void playTicks(const FakeGame& game, unsigned ticks) {
        gameProcess = game.processId();
        announceAndEnd(game.processId(), ticks);
    }

    void announceAndEnd(std::uint32_t process, unsigned ticks) {
        service.suspend();
        service.post(BRISK_APP_STARTED, 1001, static_cast<LPARAM>(process));
        service.tick(ticks);
        service.post(BRISK_APP_FINISHED, 5, 0x1F);
        service.resume();
        service.quit();
    }

    void playOffered() {
        FakeGame game(program);
        gameProcess = game.processId();
        play(game);
        toasts.waitForShows(1);
    }

    void quitAndCheck(const std::string& name) {
        service.quit();
        check(name);
    }

    // The whole game up to the service's end.
    void playAndCheck(const std::string& name) {
        FakeGame game(program);
        gameProcess = game.processId();
        play(game);
        quitAndCheck(name);
    }

    std::uint32_t gameProcess = 0;
};

TEST_F(ServiceLogsTest, OfferThatIsConfigured) {
    start();
    playOffered();
    toasts.press(1, 0);
    quitAndCheck("offer-configured");
}

TEST_F(ServiceLogsTest, OfferWithoutAnAnswer) {
    start();
    playOffered();
    quitAndCheck("offer-unanswered");
}

TEST_F(ServiceLogsTest, OfferThatIsPutOff) {
    start();
    playOffered();
    toasts.press(1, 1);
    quitAndCheck("offer-not-now");
}

TEST_F(ServiceLogsTest, OfferWhoseFileIsHeldOpen) {
    start();
    playOffered();
    const UniqueHandle editor(CreateFileW(settings().c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                          OPEN_EXISTING, 0, nullptr));
    toasts.press(1, 0);
    quitAndCheck("offer-file-held-open");
}

TEST_F(ServiceLogsTest, OfferWhoseTitleHoldsAnError) {
    useDatabase(R"j("(Width=)(\\d+)()")j", R"j("(Width=)(\\w+)()", "create_key": "^()(x)()")j");
    start();
    playOffered();
    writeFile(settings(), replaced(kSettings, "1024", "wide"));
    toasts.press(1, 0);
    quitAndCheck("offer-title-error");
}

TEST_F(ServiceLogsTest, OfferThatWindowsRefusesToShow) {
    SetEnvironmentVariableW(standin::kFailVariable, L"Show=0x80070005");
    start();
    playAndCheck("offer-toast-refused");
}

TEST_F(ServiceLogsTest, OffersThatAreSwitchedOffAndOnAgain) {
    start();
    FakeGame game(program);
    gameProcess = game.processId();
    play(game);
    toasts.waitForShows(1);
    toasts.press(1, 2);
    play(game);
    service.post(BRISK_RESET_PROMPT_COUNTERS);
    service.waitForLog("Brisk : onResetPromptCounters");
    play(game);
    toasts.waitForShows(2);
    quitAndCheck("offers-off");
}

TEST_F(ServiceLogsTest, OfferThatIsPutOffThreeTimes) {
    start();
    FakeGame game(program);
    gameProcess = game.processId();
    for (unsigned refusal = 1; refusal <= 3; ++refusal) {
        play(game);
        toasts.waitForShows(refusal);
        toasts.press(refusal, 1);
    }
    play(game);
    quitAndCheck("refused-three-times");
}

TEST_F(ServiceLogsTest, UnknownId) {
    start();
    service.post(BRISK_APP_STARTED, 1002, 0x10);
    service.post(BRISK_APP_FINISHED);
    quitAndCheck("unknown-id");
}

TEST_F(ServiceLogsTest, UnknownGameBetweenAnOfferAndItsAnswer) {
    start();
    playOffered();
    service.post(BRISK_APP_STARTED, 1002, 0x10);
    service.post(BRISK_APP_FINISHED);
    service.waitForLog("Brisk : got BRISK_APP_FINISHED message in IDLE state.");
    toasts.press(1, 0);
    quitAndCheck("unknown-id-beside-an-offer");
}

TEST_F(ServiceLogsTest, GameThatEndsBeforeItIsLookedFor) {
    start();
    gameProcess = 0x11C;
    announceAndEnd(gameProcess, 0);
    check("never-looked-for");
}

TEST_F(ServiceLogsTest, NoWindowInTheForeground) {
    start();
    // A program that has ended leaves nothing in the foreground.
    {
        const FakeGame game(program);
    }
    if (GetForegroundWindow()) {
        SetForegroundWindow(GetDesktopWindow());
    }
    waitUntil("an empty foreground", [] { return GetForegroundWindow() == nullptr; });
    gameProcess = 0x11C;
    announceAndEnd(gameProcess, 2);
    check("never-in-foreground");
}

TEST_F(ServiceLogsTest, OtherProcessInTheForeground) {
    start();
    FakeGame game(program);
    game.giveForegroundAway();
    playTicks(game, 3);
    check("other-process");
}

TEST_F(ServiceLogsTest, OtherPublisher) {
    useDatabase("Brackwater Games", "Brackwater Ltd");
    start();
    const FakeGame game(program);
    playTicks(game, 2);
    check("other-publisher");
}

TEST_F(ServiceLogsTest, OtherBinaryName) {
    start();
    const FakeGame game(FakeGame::install(FakeGame::executable(), machine / "Game" / "Harbour.exe"));
    playTicks(game, 2);
    check("other-binary-name");
}

TEST_F(ServiceLogsTest, NoConfiguration) {
    std::filesystem::remove(settings());
    start();
    const FakeGame game(program);
    playTicks(game, 2);
    check("no-configuration");
}

TEST_F(ServiceLogsTest, NoConfigurationInTheRegistry) {
    useDatabase("\"txt\"", "\"reg\"");
    useDatabase(R"(%APPDIR%\\Settings.ini)", "HKEY_CURRENT_USER/Software/Brackwater/Nothing");
    start();
    const FakeGame game(program);
    playTicks(game, 2);
    check("no-registry-configuration");
}

TEST_F(ServiceLogsTest, ConfigurationThatGoesWhileTheGameIsPlayed) {
    start();
    const FakeGame game(program);
    gameProcess = game.processId();
    announceWithTicks(game, 1);
    service.waitForLog("Brisk : switch to APP_WARMING");
    service.suspend();
    std::filesystem::remove(settings());
    service.tick(2 + 3 + 1 + 1);
    service.post(BRISK_APP_FINISHED, 5, 0x1F);
    service.resume();
    quitAndCheck("configuration-gone");
}

TEST_F(ServiceLogsTest, ProcessThatCannotBeOpened) {
    start();
    const FakeGame game(program);
    // Nobody may do anything with it.
    const UniqueHandle process(OpenProcess(WRITE_DAC, FALSE, game.processId()));
    ACL nothing{};
    ASSERT_TRUE(InitializeAcl(&nothing, sizeof nothing, ACL_REVISION));
    ASSERT_EQ(SetSecurityInfo(process.get(), SE_KERNEL_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &nothing,
                              nullptr),
              ERROR_SUCCESS);
    playTicks(game, 2);
    check("process-not-opened");
}

TEST_F(ServiceLogsTest, GameThatIsReportedAsEndedWhileItWarmsUp) {
    start();
    const FakeGame game(program);
    playTicks(game, 2);
    check("ended-while-warming");
}

TEST_F(ServiceLogsTest, GameThatDiesWhileItWarmsUp) {
    start();
    FakeGame game(program);
    gameProcess = game.processId();
    announceWithTicks(game, 1);
    service.waitForLog("Brisk : switch to APP_WARMING");
    service.suspend();
    game.die();
    service.tick(1);
    service.post(BRISK_APP_FINISHED, 5, 0x1F);
    service.resume();
    quitAndCheck("died-while-warming");
}

TEST_F(ServiceLogsTest, TooFewSamples) {
    start();
    const FakeGame game(program);
    playTicks(game, 1 + 2 + 2);
    check("too-few-samples");
}

// A machine with the vendor's library.
class ServiceLogsLibraryTest : public ServiceLogsTest {
protected:
    ServiceLogsLibraryTest() { kestrelstandin::installKestrel(service.folder()); }

    // Plays on a machine of which the library answers this.
    void playAndCheckOn(const std::string& answers, const std::string& log) {
        const kestrelstandin::KestrelStandin library(answers);
        start("");
        playAndCheck(log);
    }
};

TEST_F(ServiceLogsLibraryTest, SamplesThatDoNotCount) {
    playAndCheckOn("desktop 0 0\ndisplay 1024 768 60\nframes 40 14 301 39\n", "rejected-samples");
}

TEST_F(ServiceLogsLibraryTest, DesktopBelowItsNativeResolution) {
    playAndCheckOn("desktop 0 0\ndisplay 1920 1080 60\nframes 40\n", "not-native-resolution");
}

TEST_F(ServiceLogsLibraryTest, DesktopThatSpansDisplays) {
    playAndCheckOn("desktop 0 0 span\ndisplay 1024 768 60\nframes 40\n", "spanned-desktop");
}

TEST_F(ServiceLogsLibraryTest, MeasuredGameThatIsFastEnough) {
    playAndCheckOn("desktop 0 0\ndisplay 1024 768 60\nframes 55\n", "measured-fast-enough");
}

TEST_F(ServiceLogsTest, NoLowerResolution) {
    // The first mode is the lowest.
    DEVMODEA mode{};
    mode.dmSize = sizeof mode;
    ASSERT_TRUE(EnumDisplaySettingsA(nullptr, 0, &mode));
    ASSERT_EQ(ChangeDisplaySettingsA(&mode, 0), DISP_CHANGE_SUCCESSFUL);
    start();
    playAndCheck("no-lower-resolution");
    ChangeDisplaySettingsA(nullptr, 0);
}

TEST_F(ServiceLogsTest, GameThatIsFastEnough) {
    start("");
    playAndCheck("fast-enough");
}

TEST_F(ServiceLogsTest, SettingsThatAreAsWanted) {
    writeFile(settings(), kAdjustedSettings);
    start();
    playAndCheck("already-as-wanted");
}

TEST_F(ServiceLogsTest, ConditionThatForbids) {
    useCondition("Upscaling");
    start();
    playAndCheck("condition");
}

TEST_F(ServiceLogsTest, ConditionWhoseSettingIsMissing) {
    useCondition("Sharpening");
    start();
    playAndCheck("condition-missing");
}

TEST_F(ServiceLogsTest, SecondGame) {
    start();
    FakeGame game(program);
    gameProcess = game.processId();
    service.suspend();
    announce(game);
    service.tick(1);
    announce(game);
    service.post(BRISK_APP_FINISHED);
    service.post(BRISK_APP_FINISHED);
    service.resume();
    quitAndCheck("second-game");
}

TEST_F(ServiceLogsTest, ServiceThatQuitsWhileAGameIsMeasured) {
    start();
    FakeGame game(program);
    gameProcess = game.processId();
    service.suspend();
    announce(game);
    service.tick(1 + 2 + 1);
    service.post(BRISK_QUIT);
    service.resume();
    service.waitForEnd();
    check("quit-while-tracking");
}

TEST_F(ServiceLogsTest, ServiceThatIsKilledWhileAGameIsMeasured) {
    start();
    FakeGame game(program);
    gameProcess = game.processId();
    announceWithTicks(game, 1 + 2 + 1);
    service.waitForLog("Brisk : FPS = 40");
    const UniqueHandle process(OpenProcess(PROCESS_TERMINATE, FALSE, service.processId()));
    TerminateProcess(process.get(), 1);
    service.waitForEnd();
    // The real timer may have brought more samples.
    std::string log = replaced(readFile(service.logFile()), "\r\n", "\n");
    log.resize(log.find("Brisk : FPS = 40\n") + std::string("Brisk : FPS = 40\n").size());
    check("killed-while-tracking", log);
}

TEST_F(ServiceLogsTest, NumberFieldWithoutDigitsWhileAGameIsJudged) {
    useDatabase(R"j("(Height=)(\\d+)()")j", R"j("(Upscal)(ing)()")j");
    start();
    FakeGame game(program);
    gameProcess = game.processId();
    service.suspend();
    announce(game);
    service.tick(1 + 2 + 3 + 1 + 1);
    service.post(BRISK_APP_FINISHED, 5, 0x1F);
    service.resume();
    EXPECT_EQ(service.waitForEnd(), 1u);
    check("error-while-judging");
}

TEST_F(ServiceLogsTest, PassOverAllGames) {
    std::string folder = replaced(machine.narrow(), "\\", "\\\\");
    const auto title = [&folder](const std::string& name) {
        return R"j({"config_type": "txt", "title_name": "A", "binary_name": ")j" + name +
               R"j(.exe", "config_locations": [")j" + folder + "\\\\" + name +
               R"j(.ini"], "config_fields": [{"key": "(Width=)(\\d+)()", "meta": "width"}]})j";
    };
    writeFile(service.folder() / "titles_db.json",
              "[" + title("StarlitHarbour") + "," + title("a") + "," + title("b") + "," + title("c") + "]");
    writeFile(machine / "StarlitHarbour.ini", "Width=1024\r\n");
    writeFile(machine / "a.ini", "Width=1024\r\n");
    writeFile(machine / "c.ini", "Width=800\r\n");
    const UniqueHandle editor(
        CreateFileW((machine / "a.ini").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    start("");
    service.post(BRISK_MASSIVE_PATCHING);
    toasts.waitForShows(1);
    toasts.press(1, 0);
    quitAndCheck("bulk-pass");
}

TEST_F(ServiceLogsTest, KeyThatIsNoRegularExpression) {
    useDatabase("(Width=", "((Width=");
    useDatabase("%APPDIR%", replaced(machine.narrow(), "\\", "\\\\") + "\\\\Game");
    start("");
    service.post(BRISK_MASSIVE_PATCHING);
    EXPECT_EQ(service.waitForEnd(), 1u);
    check("bulk-pass-error");
}

TEST_F(ServiceLogsTest, SecondServiceThatSharesTheLog) {
    start("");
    // As a host does that starts it twice.
    const std::wstring brisk = (service.folder() / "brisk.exe").native();
    const PROCESS_INFORMATION second = startProcess(brisk, L"\"" + brisk + L"\" -log " + service.logFile().native());
    CloseHandle(second.hThread);
    const UniqueHandle process(second.hProcess);
    WaitForSingleObject(process.get(), 10'000);
    quitAndCheck("running-already");
}

TEST_F(ServiceLogsTest, StartsThatFindNoDatabase) {
    const auto startWith = [this](const std::string& name, const char* database) {
        std::filesystem::remove(service.logFile());
        std::filesystem::remove(service.folder() / "titles_db.json");
        if (database) {
            writeFile(service.folder() / "titles_db.json", database);
        }
        service.start();
        service.waitForEnd();
        check(name);
    };
    startWith("no-database", nullptr);
    startWith("database-no-array", R"({"id": 1})");
    startWith("database-empty", "[]");
    startWith("malformed-database", "[\n  {\n    \"id\": 7\n    \"config_type\": \"txt\"\n  }\n]\n");
    startWith("location-no-text", R"([{"config_type": "txt", "config_locations": [5]}])");
}

TEST_F(ServiceLogsTest, RegistryThatCannotBeWritten) {
    HKEY parent = nullptr;
    ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, "SOFTWARE\\Orlan", 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS,
                              nullptr, &parent, nullptr),
              ERROR_SUCCESS);
    RegCloseKey(parent);
    service.start();
    service.waitForEnd();
    check("no-registry");
}

} // namespace
} // namespace brisk::testing
