// briskhost against a window of the service's class that the test makes itself.
#include "BriskHost.h"
#include "base/WindowsHandles.h"
#include "support/ConsoleProgram.h"
#include "support/Places.h"
#include "tools/host/RecordingWindow.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include <windows.h>

namespace brisk {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char kHelp[] =
    "briskhost: tells a running Brisk service what its host would tell it\n"
    "\n"
    "usage: briskhost status [--format json]  is a service running? As JSON also its path, command line and titles\n"
    "       briskhost wait [SECONDS]          wait until a service has started, for ever or so long\n"
    "       briskhost start GAMEID PID        a game was started\n"
    "       briskhost play GAMEID PROGRAM [ARGUMENT...]\n"
    "                                         start a game, announce it, wait for its end and tell that\n"
    "       briskhost finish [WPARAM LPARAM]  the game has finished; the numbers (0 0) only go to the log\n"
    "       briskhost patch-all               adjust every installed title\n"
    "       briskhost reset                   forget the user's answers to earlier offers\n"
    "       briskhost title-info FILE         send the JSON text in FILE as title information\n"
    "       briskhost follow LOG              print verdicts on games as the service writes them, until it ends\n"
    "       briskhost quit [--wait SECONDS]   shut the service down, and wait so long for its process to end\n"
    "       briskhost --help                  print this text\n"
    "\n"
    "Numbers are unsigned 32-bit numbers, decimal or hexadecimal with 0x.\n"
    "Exit code: 0 done, 1 not done (no service is running, for example), 2 wrong usage or no way to print.\n";

class BriskHost : public testing::HostTest {};

using testing::hexadecimal;
using testing::Outcome;
using testing::received;
using testing::ServiceWindow;

Outcome briskhost(const std::wstring& arguments, const std::function<void()>& meanwhile = [] {}) {
    return testing::runProgram(testing::place(BRISK_HOST_PROGRAM), arguments, meanwhile);
}

const Outcome kSilentSuccess{0, "", ""};
const Outcome kNoService{1, "", "briskhost: no service is running\n"};

Outcome wrongUsage(const std::string& reason) {
    return {2, "", "briskhost: " + reason + "\nTry: briskhost --help\n"};
}

UniqueHandle startedEvent(bool set) {
    return UniqueHandle(CreateEventA(nullptr, TRUE, set, BRISK_STARTED_EVENT));
}

// A file in the temporary folder, removed at the end.
class TemporaryFile {
public:
    TemporaryFile(const std::wstring& name, const std::string& content)
        : path(std::filesystem::temp_directory_path() / name) {
        std::ofstream(path, std::ios::binary) << content;
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() { std::filesystem::remove(path); }

    std::wstring quoted() const { return L"\"" + path.native() + L"\""; }

private:
    std::filesystem::path path;
};

TEST_F(BriskHost, AnnouncesAStartedGameByItsGameIdAndItsProcessId) {
    const ServiceWindow service;
    EXPECT_EQ(briskhost(L"start 42 0x1A4"), kSilentSuccess);
    EXPECT_THAT(received, ElementsAre("message 0x402, wParam 0x2a, lParam 0x1a4"));
}

TEST_F(BriskHost, TakesEveryUnsigned32BitNumberInDecimalAndInHexadecimal) {
    const ServiceWindow service;
    EXPECT_EQ(briskhost(L"start 0 4294967295"), kSilentSuccess);
    EXPECT_EQ(briskhost(L"start 0XfFfFfFfF 0x0"), kSilentSuccess);
    EXPECT_EQ(briskhost(L"start 010 0x010"), kSilentSuccess);
    EXPECT_THAT(received,
                ElementsAre("message 0x402, wParam 0x0, lParam 0xffffffff",
                            "message 0x402, wParam 0xffffffff, lParam 0x0", "message 0x402, wParam 0xa, lParam 0x10"));
}

TEST_F(BriskHost, RefusesWhatIsNoUnsigned32BitNumberAndPostsNothing) {
    const ServiceWindow service;
    for (const std::string text :
         {"-1", "+1", "4294967296", "0x100000000", "0x", "x1", "0x-1", "12a", "1.5", "0xg", "1e3"}) {
        EXPECT_EQ(briskhost(L"start 5 " + std::wstring(text.begin(), text.end())),
                  wrongUsage("not an unsigned 32-bit number: '" + text + "'"));
    }
    for (const wchar_t* arguments : {L"start -1 5", L"finish -1 5", L"finish 5 -1", L"wait -1"}) {
        EXPECT_EQ(briskhost(arguments), wrongUsage("not an unsigned 32-bit number: '-1'"));
    }
    EXPECT_EQ(briskhost(L"start \"\" 5"), wrongUsage("not an unsigned 32-bit number: ''"));
    EXPECT_EQ(briskhost(L"start \" 5\" 5"), wrongUsage("not an unsigned 32-bit number: ' 5'"));
    EXPECT_EQ(briskhost(L"start \"5 \" 5"), wrongUsage("not an unsigned 32-bit number: '5 '"));
    EXPECT_THAT(received, IsEmpty());
}

TEST_F(BriskHost, ReportsAFinishedGameWithNoughtsOrTheGivenNumbers) {
    const ServiceWindow service;
    EXPECT_EQ(briskhost(L"finish"), kSilentSuccess);
    EXPECT_EQ(briskhost(L"finish 7 0xBEEF"), kSilentSuccess);
    EXPECT_THAT(received,
                ElementsAre("message 0x403, wParam 0x0, lParam 0x0", "message 0x403, wParam 0x7, lParam 0xbeef"));
}

TEST_F(BriskHost, PostsTheMessagesWithoutParameters) {
    const ServiceWindow service;
    EXPECT_EQ(briskhost(L"patch-all"), kSilentSuccess);
    EXPECT_EQ(briskhost(L"reset"), kSilentSuccess);
    EXPECT_EQ(briskhost(L"quit"), kSilentSuccess);
    EXPECT_THAT(received, ElementsAre("message 0x405, wParam 0x0, lParam 0x0", "message 0x406, wParam 0x0, lParam 0x0",
                                      "message 0x401, wParam 0x0, lParam 0x0"));
}

TEST_F(BriskHost, SendsAFilesBytesAsTitleInformation) {
    const ServiceWindow service;
    const std::string bytes("{\r\n \"name\": \"M\xC3\xBChle\"\n}\0\x1A\xFF", 26);
    const TemporaryFile file(L"titles M\u00FChle \u661F.json", bytes);
    EXPECT_EQ(briskhost(L"title-info " + file.quoted()), kSilentSuccess);
    EXPECT_THAT(received, ElementsAre("copy data, wParam 0x404, tag 0x404, bytes [" + bytes + "]"));
}

TEST_F(BriskHost, SendsAnEmptyFileAsAnEmptyBlock) {
    const ServiceWindow service;
    const TemporaryFile file(L"briskhost-empty.json", "");
    EXPECT_EQ(briskhost(L"title-info " + file.quoted()), kSilentSuccess);
    EXPECT_THAT(received, ElementsAre("copy data, wParam 0x404, tag 0x404, bytes []"));
}

TEST_F(BriskHost, SaysWhichTitleInformationItCannotReadAndSendsNothing) {
    const ServiceWindow service;
    EXPECT_EQ(briskhost(L"title-info \"C:\\no such \u661F.json\""),
              (Outcome{1, "", "briskhost: cannot read 'C:\\no such \xE6\x98\x9F.json'\n"}));
    EXPECT_EQ(briskhost(L"title-info C:\\windows"), (Outcome{1, "", "briskhost: cannot read 'C:\\windows'\n"}));
    EXPECT_THAT(received, IsEmpty());
}

TEST_F(BriskHost, FailsInEveryMessageWhenNoServiceIsRunning) {
    const TemporaryFile file(L"briskhost-no-service.json", "{}");
    for (const std::wstring& arguments :
         {std::wstring(L"start 42 420"), std::wstring(L"finish"), std::wstring(L"finish 1 2"),
          std::wstring(L"patch-all"), std::wstring(L"reset"), std::wstring(L"quit"), L"title-info " + file.quoted()}) {
        EXPECT_EQ(briskhost(arguments), kNoService);
    }
}

TEST_F(BriskHost, TellsWhetherAServiceIsRunning) {
    EXPECT_EQ(briskhost(L"status"), (Outcome{1, "No service is running.\n", ""}));
    const ServiceWindow service;
    const DWORD id = GetCurrentProcessId();
    const std::string running =
        "The service is running: process " + std::to_string(id) + " (" + hexadecimal(id) + "), started event ";
    EXPECT_EQ(briskhost(L"status"), (Outcome{0, running + "not set.\n", ""}));
    const UniqueHandle event = startedEvent(false);
    EXPECT_EQ(briskhost(L"status"), (Outcome{0, running + "not set.\n", ""}));
    SetEvent(event.get());
    EXPECT_EQ(briskhost(L"status"), (Outcome{0, running + "set.\n", ""}));
    EXPECT_THAT(received, IsEmpty());
}

TEST_F(BriskHost, DoesNotWaitWhenTheServiceHasStarted) {
    const UniqueHandle event = startedEvent(true);
    EXPECT_EQ(briskhost(L"wait"), kSilentSuccess);
    EXPECT_EQ(briskhost(L"wait 0"), kSilentSuccess);
}

TEST_F(BriskHost, WaitsUntilTheServiceMakesAndSetsItsEvent) {
    UniqueHandle event;
    EXPECT_EQ(briskhost(L"wait", [&] { event = startedEvent(true); }), kSilentSuccess);
    event.reset();
    event = startedEvent(false);
    EXPECT_EQ(briskhost(L"wait 60", [&] { SetEvent(event.get()); }), kSilentSuccess);
}

TEST_F(BriskHost, GivesUpWaitingAfterTheGivenSeconds) {
    EXPECT_EQ(briskhost(L"wait 0"), (Outcome{1, "", "briskhost: the service has not started within 0 s\n"}));
    const UniqueHandle event = startedEvent(false);
    const ULONGLONG begin = GetTickCount64();
    EXPECT_EQ(briskhost(L"wait 1"), (Outcome{1, "", "briskhost: the service has not started within 1 s\n"}));
    EXPECT_GE(GetTickCount64() - begin, 1000U);
}

TEST_F(BriskHost, PrintsItsHelp) {
    EXPECT_EQ(briskhost(L"--help"), (Outcome{0, kHelp, ""}));
}

TEST_F(BriskHost, RefusesWrongUsageAndPostsNothing) {
    const ServiceWindow service;
    EXPECT_EQ(briskhost(L""), wrongUsage("a command is missing"));
    for (const std::string text : {"Start 1 2",   "launch",         "start",       "start 1",    "start 1 2 3",
                                   "finish 1",    "finish 1 2 3",   "patch-all 1", "reset 1",    "quit 1",
                                   "quit --wait", "play 1",         "follow",      "follow a b", "status --format text",
                                   "title-info",  "title-info a b", "wait 1 2",    "status 1",   "--help 1"}) {
        EXPECT_EQ(briskhost(std::wstring(text.begin(), text.end())),
                  wrongUsage("unknown command or wrong number of arguments: '" + text.substr(0, text.find(' ')) + "'"));
    }
    EXPECT_THAT(received, IsEmpty());
}

} // namespace

} // namespace brisk
