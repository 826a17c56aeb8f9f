// briskhost: plays the host for a running service from the command line. Everything it knows of the service stands in
// BriskHost.h; what can be seen of it and of its log, brisklog's library tells. Texts go in and out as UTF-8.
#include "BriskHost.h"
#include "base/WindowsHandles.h"
#include "tools/console/Files.h"
#include "tools/console/Program.h"
#include "tools/log/Follow.h"
#include "tools/log/JsonWriter.h"
#include "tools/log/ServiceFacts.h"
#include "tools/log/StartedProgram.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include <windows.h>

namespace {

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

constexpr DWORD kPollMilliseconds = 20;
constexpr DWORD kFollowMilliseconds = 200;
constexpr UINT kSendLimitMilliseconds = 10'000;

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

using Arguments = std::vector<std::string>;

int fail(const std::string& reason) {
    std::cerr << "briskhost: " << reason << '\n';
    return kFailed;
}

int wrongUsage(const std::string& reason) {
    std::cerr << "briskhost: " << reason << "\nTry: briskhost --help\n";
    return kWrongUsage;
}

// The whole text as a number: decimal, or hexadecimal behind 0x; nothing else around it.
std::optional<std::uint32_t> toNumber(const std::string& text) {
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    const char* const begin = text.data() + (hexadecimal ? 2 : 0);
    const char* const end = text.data() + text.size();
    std::uint32_t number = 0;
    const auto [rest, error] = std::from_chars(begin, end, number, hexadecimal ? 16 : 10);
    if (error != std::errc() || rest != end) {
        return std::nullopt;
    }
    return number;
}

HWND findService() {
    return FindWindowA(BRISK_WINDOW_CLASS, nullptr);
}

int noService() {
    return fail("no service is running");
}

int post(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    const HWND service = findService();
    if (!service) {
        return noService();
    }
    if (!PostMessageA(service, message, wParam, lParam)) {
        return fail("the message could not be posted, error " + std::to_string(GetLastError()));
    }
    return kDone;
}

int postNumbers(UINT message, const Arguments& arguments) {
    const std::optional<std::uint32_t> first = toNumber(arguments[1]);
    const std::optional<std::uint32_t> second = toNumber(arguments[2]);
    if (!first || !second) {
        return wrongUsage("not an unsigned 32-bit number: '" + arguments[first ? 2 : 1] + "'");
    }
    return post(message, *first, static_cast<LPARAM>(*second));
}

int sendTitleInfo(const std::string& fileName) {
    std::ifstream file(brisk::fromUtf8(fileName), std::ios::binary);
    std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (!file || text.size() > std::numeric_limits<DWORD>::max()) {
        return fail("cannot read '" + fileName + "'");
    }
    const HWND service = findService();
    if (!service) {
        return noService();
    }
    COPYDATASTRUCT data{BRISK_TITLE_INFO_TAG, static_cast<DWORD>(text.size()), text.data()};
    // The service's answer is the same whatever it made of the text, so it says nothing.
    DWORD_PTR answer = 0;
    if (!SendMessageTimeoutA(service, WM_COPYDATA, BRISK_TITLE_INFO_TAG, reinterpret_cast<LPARAM>(&data),
                             SMTO_ABORTIFHUNG, kSendLimitMilliseconds, &answer)) {
        return fail("the title information could not be sent, error " + std::to_string(GetLastError()));
    }
    return kDone;
}

// Whether the started event exists and is set, or becomes so in the given time.
bool isStarted(DWORD milliseconds) {
    const HANDLE event = OpenEventA(SYNCHRONIZE, FALSE, BRISK_STARTED_EVENT);
    if (!event) {
        return false;
    }
    const bool started = WaitForSingleObject(event, milliseconds) == WAIT_OBJECT_0;
    CloseHandle(event);
    return started;
}

// The service makes the event when it starts, so before that there is nothing to wait for: look again and again.
int waitForService(std::optional<std::uint32_t> seconds) {
    const ULONGLONG begin = GetTickCount64();
    while (!isStarted(kPollMilliseconds)) {
        if (seconds && GetTickCount64() - begin >= *seconds * 1000ULL) {
            return fail("the service has not started within " + std::to_string(*seconds) + " s");
        }
        Sleep(kPollMilliseconds);
    }
    return kDone;
}

// Waits for the process, not for its window: that goes first.
int quitAndWait(std::uint32_t seconds) {
    DWORD processId = 0;
    GetWindowThreadProcessId(findService(), &processId);
    const brisk::UniqueHandle process(processId == 0 ? nullptr : OpenProcess(SYNCHRONIZE, FALSE, processId));
    if (const int exitCode = post(BRISK_QUIT); exitCode != kDone) {
        return exitCode;
    }
    if (!process) {
        return fail("the service's process cannot be waited for");
    }
    const std::uint64_t milliseconds = std::min<std::uint64_t>(seconds * 1000ULL, INFINITE - 1);
    return WaitForSingleObject(process.get(), static_cast<DWORD>(milliseconds)) == WAIT_OBJECT_0
               ? kDone
               : fail("the service has not ended within " + std::to_string(seconds) + " s");
}

// Starts the game as its launcher would, tells the service of it, and of its end.
int play(const std::string& gameId, const Arguments& command) {
    const std::optional<std::uint32_t> id = toNumber(gameId);
    if (!id) {
        return wrongUsage("not an unsigned 32-bit number: '" + gameId + "'");
    }
    if (!findService()) {
        return noService();
    }
    try {
        const brisk::logbook::StartedProgram game = brisk::logbook::startSuspended(command);
        ResumeThread(game.thread.get());
        if (const int exitCode = post(BRISK_APP_STARTED, *id, static_cast<LPARAM>(game.processId)); exitCode != kDone) {
            return exitCode;
        }
        WaitForSingleObject(game.process.get(), INFINITE);
    } catch (const std::exception& error) {
        return fail(error.what());
    }
    return post(BRISK_APP_FINISHED);
}

int followLog(const std::string& log) {
    const auto pause = [] {
        Sleep(kFollowMilliseconds);
        return true;
    };
    return brisk::logbook::follow(log, std::cout, pause) == 0 ? kDone : fail("cannot read '" + log + "'");
}

int printJsonStatus() {
    brisk::logbook::JsonWriter json;
    json.beginObject();
    const auto processId = brisk::logbook::findServiceProcess();
    json.member("running", processId.has_value());
    if (processId) {
        const brisk::logbook::ServiceFacts service = brisk::logbook::readServiceFacts(*processId);
        json.member("started", isStarted(0));
        json.member("processId", service.processId);
        json.textMember("version", service.fileVersion);
        json.textMember("path", service.path);
        json.textMember("commandLine", service.commandLine);
        json.key("database");
        json.beginObject();
        json.textMember("path", service.databasePath);
        json.member("readable", service.database.has_value());
        json.member("titles", std::uint64_t{service.titles});
        json.endObject();
    }
    json.endObject();
    std::cout << json.take();
    return processId ? kDone : kFailed;
}

int printStatus() {
    const HWND service = findService();
    if (!service) {
        std::cout << "No service is running.\n";
        return kFailed;
    }
    DWORD processId = 0;
    GetWindowThreadProcessId(service, &processId);
    std::cout << "The service is running: process " << processId << " (0x" << std::hex << processId
              << "), started event " << (isStarted(0) ? "set" : "not set") << ".\n";
    return kDone;
}

int run(const Arguments& arguments) {
    if (arguments.empty()) {
        return wrongUsage("a command is missing");
    }
    const std::string& command = arguments[0];
    const std::size_t count = arguments.size() - 1;
    if (command == "--help" && count == 0) {
        std::cout << kHelp;
        return kDone;
    }
    if (command == "status" && count == 0) {
        return printStatus();
    }
    if (command == "status" && count == 2 && arguments[1] == "--format" && arguments[2] == "json") {
        return printJsonStatus();
    }
    if (command == "play" && count >= 2) {
        return play(arguments[1], {arguments.begin() + 2, arguments.end()});
    }
    if (command == "follow" && count == 1) {
        return followLog(arguments[1]);
    }
    if (command == "wait" && count == 0) {
        return waitForService(std::nullopt);
    }
    if (command == "wait" && count == 1) {
        const std::optional<std::uint32_t> seconds = toNumber(arguments[1]);
        return seconds ? waitForService(seconds) : wrongUsage("not an unsigned 32-bit number: '" + arguments[1] + "'");
    }
    if (command == "start" && count == 2) {
        return postNumbers(BRISK_APP_STARTED, arguments);
    }
    if (command == "finish" && count == 0) {
        return post(BRISK_APP_FINISHED);
    }
    if (command == "finish" && count == 2) {
        return postNumbers(BRISK_APP_FINISHED, arguments);
    }
    if (command == "patch-all" && count == 0) {
        return post(BRISK_MASSIVE_PATCHING);
    }
    if (command == "reset" && count == 0) {
        return post(BRISK_RESET_PROMPT_COUNTERS);
    }
    if (command == "title-info" && count == 1) {
        return sendTitleInfo(arguments[1]);
    }
    if (command == "quit" && count == 0) {
        return post(BRISK_QUIT);
    }
    if (command == "quit" && count == 2 && arguments[1] == "--wait") {
        const std::optional<std::uint32_t> seconds = toNumber(arguments[2]);
        return seconds ? quitAndWait(*seconds) : wrongUsage("not an unsigned 32-bit number: '" + arguments[2] + "'");
    }
    return wrongUsage("unknown command or wrong number of arguments: '" + command + "'");
}

std::string toUtf8(const wchar_t* text) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, narrow.data(), size, nullptr, nullptr);
    narrow.pop_back(); // the terminator
    return narrow;
}

} // namespace

int wmain(int argc, wchar_t** argv) {
    Arguments arguments;
    for (int index = 1; index < argc; ++index) {
        arguments.push_back(toUtf8(argv[index]));
    }
    return brisk::runProgram("briskhost", [&arguments](const brisk::Console&) { return run(arguments); });
}
