// brisklog record with the service itself.
#include "base/Version.h"
#include "service/GameFixture.h"
#include "support/ConsoleProgram.h"
#include "support/Places.h"
#include "tools/log/Sha256.h"
#include "tools/log/Verdicts.h"

namespace brisk::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

class RecordTest : public GameFixture {
protected:
    // Runs `brisklog record -o recording ARGUMENTS`.
    Outcome record(const std::wstring& arguments, const std::function<void()>& meanwhile = [] {}) const {
        return runProgram(place(BRISK_LOG_PROGRAM), L"record -o \"" + recording().native() + L"\" " + arguments,
                          meanwhile);
    }

    std::filesystem::path recording() const { return machine / "recording.log"; }
    std::string executable() const { return service.folder().string() + "\\brisk.exe"; }
};

TEST_F(RecordTest, StartedServiceIsRecordedFromItsFirstLineOn) {
    std::uint32_t processId = 0;
    const auto playAndQuit = [&] {
        waitUntil("the service's window", [this] { return service.window() != nullptr; });
        DWORD id = 0;
        GetWindowThreadProcessId(service.window(), &id);
        processId = id;
        FakeGame game(program);
        announce(game);
        service.tick(1 + 2 + 3 + 1 + 1);
        service.post(BRISK_APP_FINISHED, 5, 0x1F);
        toasts.waitForShows(1);
        toasts.press(1, 0);
        service.post(BRISK_QUIT);
    };
    const Outcome outcome = record(
        L"-- \"" + (service.folder() / "brisk.exe").native() + L"\" -nw 2 -nt 3 -nn 1 -nv 4 -fps 40", playAndQuit);
    EXPECT_EQ(outcome, (Outcome{0, "", ""}));
    const std::string text = readFile(recording());
    EXPECT_THAT(verdictsOf(text), ElementsAre("game 1001 StarlitHarbour.exe offer offer configure patched",
                                              "session normal fps-parameter"));
    const std::string database = readFile(service.folder() / "titles_db.json");
    EXPECT_THAT(text, HasSubstr("# program: " + executable() + "\n"));
    EXPECT_THAT(text, HasSubstr("\\brisk.exe -nw 2 -nt 3 -nn 1 -nv 4 -fps 40\n"));
    EXPECT_THAT(text, HasSubstr(std::string("# file version: ") + kVersion + "\n"));
    EXPECT_THAT(text, HasSubstr("# database SHA-256: " + logbook::sha256(database) + "\n# database titles: 1\n"));
    EXPECT_THAT(text, HasSubstr("# primary display: "));
    EXPECT_THAT(text, HasSubstr("# registry: "));
    for (const std::string& line : splitLines(text)) {
        if (!line.starts_with("# ")) {
            // 2026-01-31T12:13:14.567 4711 Brisk ...
            EXPECT_THAT(
                line, ::testing::MatchesRegex("....-..-..T..:..:..\\.... " + std::to_string(processId) + " Brisk .*"));
        }
    }
    EXPECT_THAT(text, HasSubstr("Brisk : looking for command line parameter -nw"));
}

TEST_F(RecordTest, RunningServiceIsRecordedFromThereOn) {
    start();
    const Outcome outcome = record(L"", [this] {
        waitUntil("the recording's begin", [this] {
            return std::filesystem::exists(recording()) &&
                   readFile(recording()).find("# warning: the service ran already") != std::string::npos;
        });
        service.quit();
    });
    EXPECT_EQ(outcome.exitCode, 0u);
    EXPECT_THAT(outcome.errors, HasSubstr("the service ran already: its lines up to here are not recorded\n"));
    EXPECT_THAT(outcome.errors, HasSubstr("the service writes its lines to the file of -log"));
    EXPECT_THAT(readFile(recording()), HasSubstr("-nw 2 -nt 3 -nn 1 -nv 4 -fps 40 -log "));
}

TEST_F(RecordTest, OtherListenerIsNamedAndNothingIsStarted) {
    const UniqueHandle buffer(
        CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 4096, "DBWIN_BUFFER"));
    const Outcome outcome = record(L"-- \"" + (service.folder() / "brisk.exe").native() + L"\"");
    EXPECT_EQ(outcome.exitCode, 2u);
    EXPECT_THAT(outcome.errors, HasSubstr("another program takes the debugger output already"));
    EXPECT_EQ(service.window(), nullptr);
}

TEST_F(RecordTest, NumberThatIsTooLargeIsSeenInARecordingAlone) {
    const Outcome outcome = record(L"-- \"" + (service.folder() / "brisk.exe").native() + L"\" -nw 2 -nt 99999999999");
    EXPECT_EQ(outcome, (Outcome{0, "", ""}));
    EXPECT_THAT(verdictsOf(readFile(recording())), ElementsAre("session bad-number unknown"));
}

TEST_F(RecordTest, MissingServiceIsSaid) {
    EXPECT_EQ(record(L""),
              (Outcome{2, "", "brisklog: no service is running; give the command line of one behind --\n"}));
    const Outcome outcome = record(L"-- C:\\no\\such\\brisk.exe");
    EXPECT_EQ(outcome.exitCode, 2u);
    EXPECT_THAT(outcome.errors, HasSubstr("C:\\no\\such\\brisk.exe cannot be started, error "));
}

TEST(Sha256, HasThePublishedValues) {
    EXPECT_EQ(logbook::sha256(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(logbook::sha256("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(logbook::sha256("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
              "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
    EXPECT_EQ(logbook::sha256(std::string(1'000'000, 'a')),
              "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

// briskhost with the service itself.
class HostCommandsTest : public GameFixture {
protected:
    static Outcome briskhost(const std::wstring& arguments, const std::function<void()>& meanwhile = [] {}) {
        return runProgram(place(BRISK_HOST_PROGRAM), arguments, meanwhile);
    }
};

TEST_F(HostCommandsTest, StatusAsJsonTellsWhatRuns) {
    EXPECT_EQ(briskhost(L"status --format json"), (Outcome{1, "{\n  \"running\": false\n}\n", ""}));
    start();
    const Outcome outcome = briskhost(L"status --format json");
    EXPECT_EQ(outcome.exitCode, 0u);
    EXPECT_THAT(outcome.output, HasSubstr("\"processId\": " + std::to_string(service.processId()) + ","));
    EXPECT_THAT(outcome.output, HasSubstr(std::string("\"version\": \"") + kVersion + "\","));
    EXPECT_THAT(outcome.output, HasSubstr("-nv 4 -fps 40 -log "));
    EXPECT_THAT(outcome.output, HasSubstr("\"titles\": 1\n"));
    service.quit();
}

TEST_F(HostCommandsTest, QuitWaitsForTheProcessAsLongAsItIsTold) {
    start();
    service.suspend();
    EXPECT_EQ(briskhost(L"quit --wait 0"), (Outcome{1, "", "briskhost: the service has not ended within 0 s\n"}));
    service.resume();
    service.waitForEnd();
    service.startAndWait();
    EXPECT_EQ(briskhost(L"quit --wait 60"), (Outcome{0, "", ""}));
    EXPECT_FALSE(service.isRunning());
    EXPECT_EQ(briskhost(L"quit --wait 60"), (Outcome{1, "", "briskhost: no service is running\n"}));
}

TEST_F(HostCommandsTest, PlayAnnouncesAGameAndItsEnd) {
    start();
    EXPECT_EQ(briskhost(L"play 1001 C:\\windows\\system32\\cmd.exe /c exit"), (Outcome{0, "", ""}));
    service.quit();
    EXPECT_THAT(verdictsOf(readFile(service.logFile())).front(), HasSubstr("game 1001 "));
    EXPECT_THAT(log(), ::testing::Contains("Brisk : onAppFinished, p1 = 0, p2 = 0"));
    EXPECT_EQ(briskhost(L"play 1001 cmd.exe"), (Outcome{1, "", "briskhost: no service is running\n"}));
}

TEST_F(HostCommandsTest, FollowPrintsVerdictsUntilTheServiceEnds) {
    start();
    const Outcome outcome = briskhost(L"follow \"" + service.logFile().native() + L"\"", [this] {
        FakeGame game(program);
        play(game);
        toasts.waitForShows(1);
        toasts.press(1, 1);
        service.post(BRISK_APP_STARTED, 7, 0x10);
        service.quit();
    });
    EXPECT_EQ(outcome.exitCode, 0u);
    EXPECT_THAT(outcome.output,
                HasSubstr("StarlitHarbour.exe (game 1001): offer. An offer was made. The player answered "
                          "\"Not Now\" (1 of 3)."));
    EXPECT_THAT(outcome.output, HasSubstr("\ngame 7: no offer, unknown-id. "));
    EXPECT_THAT(outcome.output, EndsWith("The service has ended: normal. The service ended normally.\n"));
    EXPECT_THAT(outcome.output, Not(HasSubstr("cut-off")));
    EXPECT_EQ(briskhost(L"follow C:\\none.log"), (Outcome{1, "", "briskhost: cannot read 'C:\\none.log'\n"}));
}

} // namespace
} // namespace brisk::testing
