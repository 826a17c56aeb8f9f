#include "NotificationStandinControl.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "base/WindowsHandles.h"
#include "support/Places.h"

namespace brisk::standin {

namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

// The process that serves ends its waiting at the limit; only one that is stuck answers later than this.
constexpr milliseconds kAnswerSlack{5000};
constexpr DWORD kPollInterval = 5;

[[noreturn]] void throwSystemError(const std::string& what) {
    throw std::runtime_error(what + " failed: error " + std::to_string(GetLastError()));
}

std::string narrow(const std::wstring& text) {
    const std::u8string bytes = std::filesystem::path(text).u8string();
    return {bytes.begin(), bytes.end()};
}

HMODULE load(const std::filesystem::path& dll) {
    HMODULE module = LoadLibraryW(dll.c_str());
    if (!module) {
        throwSystemError("loading " + narrow(dll.wstring()));
    }
    return module;
}

template <class Function>
Function* find(HMODULE module, const char* name) {
    FARPROC function = GetProcAddress(module, name);
    if (!function) {
        throwSystemError(std::string("finding ") + name);
    }
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(function));
}

void callServer(const std::filesystem::path& dll, const char* name) {
    using ServerFunction = HRESULT STDAPICALLTYPE();
    HMODULE module = load(dll);
    const HRESULT result = find<ServerFunction>(module, name)();
    FreeLibrary(module);
    if (FAILED(result)) {
        char code[11];
        std::snprintf(code, sizeof code, "0x%08lX", static_cast<unsigned long>(result));
        throw std::runtime_error(std::string(name) + " answered " + code);
    }
}

std::wstring pipeFromEnvironment() {
    wchar_t name[MAX_PATH];
    const DWORD length = GetEnvironmentVariableW(kPipeVariable, name, MAX_PATH);
    return length > 0 && length < MAX_PATH ? std::wstring(name, length) : kDefaultPipe;
}

UniqueHandle connect(const std::wstring& name, Clock::time_point deadline) {
    for (;;) {
        HANDLE pipe = CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_OVERLAPPED, nullptr);
        if (pipe != INVALID_HANDLE_VALUE) {
            return UniqueHandle(pipe);
        }
        const DWORD error = GetLastError();
        if (error != ERROR_FILE_NOT_FOUND && error != ERROR_PIPE_BUSY) {
            throwSystemError("opening " + narrow(name));
        }
        if (Clock::now() >= deadline) {
            throw std::runtime_error("no process serves notifications at " + narrow(name));
        }
        Sleep(kPollInterval);
    }
}

// Sends the message and waits for the one that answers it.
std::string transact(HANDLE pipe, std::string message, milliseconds limit) {
    DWORD mode = PIPE_READMODE_MESSAGE;
    if (!SetNamedPipeHandleState(pipe, &mode, nullptr, nullptr)) {
        throwSystemError("setting up the command pipe");
    }
    const UniqueHandle done(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    OVERLAPPED overlapped{};
    overlapped.hEvent = done.get();
    std::string answer(kLongestMessage, '\0');
    DWORD size = 0;
    if (!TransactNamedPipe(pipe, message.data(), static_cast<DWORD>(message.size()), answer.data(), kLongestMessage,
                           nullptr, &overlapped) &&
        GetLastError() != ERROR_IO_PENDING) {
        throwSystemError("sending a command");
    }
    const bool late =
        WaitForSingleObject(done.get(), static_cast<DWORD>((limit + kAnswerSlack).count())) != WAIT_OBJECT_0;
    if (late) {
        CancelIoEx(pipe, &overlapped);
    }
    const BOOL received = GetOverlappedResult(pipe, &overlapped, &size, TRUE);
    if (late) {
        throw std::runtime_error("the process that serves notifications does not answer: " + message);
    }
    if (!received) {
        throwSystemError("receiving a command's answer");
    }
    return answer.substr(0, size);
}

} // namespace

std::filesystem::path standinDll() {
    return testing::place(NOTIFICATION_STANDIN_DLL);
}

void registerStandin(const std::filesystem::path& dll) {
    callServer(dll, "DllRegisterServer");
}

void unregisterStandin(const std::filesystem::path& dll) {
    callServer(dll, "DllUnregisterServer");
}

std::vector<std::string> readRecord(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::string waitForRecordLine(const std::filesystem::path& file, const std::string& start, milliseconds limit) {
    const Clock::time_point deadline = Clock::now() + limit;
    for (;;) {
        for (const std::string& line : readRecord(file)) {
            if (line.starts_with(start)) {
                return line;
            }
        }
        if (Clock::now() >= deadline) {
            throw std::runtime_error("no line of the record starts with \"" + start + "\"");
        }
        Sleep(kPollInterval);
    }
}

NotificationStandinControl::NotificationStandinControl() : NotificationStandinControl(pipeFromEnvironment()) {}

NotificationStandinControl::NotificationStandinControl(std::wstring pipe) : pipeName(kPipePrefix + std::move(pipe)) {}

NotificationStandinControl NotificationStandinControl::inProcess(const std::filesystem::path& dll) {
    return NotificationStandinControl(find<CommandFunction>(load(dll), kCommandExport));
}

std::vector<std::string> NotificationStandinControl::list(milliseconds limit) const {
    std::istringstream stream(command("list", limit));
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

void NotificationStandinControl::waitForShows(unsigned count, milliseconds limit) const {
    command("wait " + std::to_string(count), limit);
}

void NotificationStandinControl::waitUntilIdle(milliseconds limit) const {
    command("idle", limit);
}

NotificationStandinControl::EventResult NotificationStandinControl::press(unsigned number, unsigned button,
                                                                          milliseconds limit) const {
    return raiseEvent("press " + std::to_string(number) + " " + std::to_string(button), limit);
}

NotificationStandinControl::EventResult NotificationStandinControl::clickBody(unsigned number,
                                                                              milliseconds limit) const {
    return raiseEvent("body " + std::to_string(number), limit);
}

NotificationStandinControl::EventResult NotificationStandinControl::dismiss(unsigned number, unsigned reason,
                                                                            milliseconds limit) const {
    return raiseEvent("dismiss " + std::to_string(number) + " " + std::to_string(reason), limit);
}

NotificationStandinControl::EventResult NotificationStandinControl::fail(unsigned number, HRESULT error,
                                                                         milliseconds limit) const {
    return raiseEvent("fail " + std::to_string(number) + " " + std::to_string(static_cast<unsigned long>(error)),
                      limit);
}

NotificationStandinControl::EventResult
NotificationStandinControl::activate(unsigned number, const std::string& arguments, milliseconds limit) const {
    return raiseEvent("activate " + std::to_string(number) + " " + arguments, limit);
}

void NotificationStandinControl::setFailures(const std::string& rules) const {
    command("failures " + rules);
}

long NotificationStandinControl::liveObjects() const {
    waitUntilIdle();
    return std::stol(command("objects"));
}

void NotificationStandinControl::reset() const {
    command("reset");
}

NotificationStandinControl::EventResult NotificationStandinControl::raiseEvent(const std::string& text,
                                                                               milliseconds limit) const {
    std::istringstream answer(command(text, limit));
    unsigned handlers = 0;
    unsigned long result = 0;
    answer >> handlers >> std::hex >> result;
    return {handlers, static_cast<HRESULT>(result)};
}

std::string NotificationStandinControl::command(const std::string& text, milliseconds limit) const {
    const Clock::time_point deadline = Clock::now() + limit;
    std::string answer;
    if (localCommand) {
        localCommand((std::to_string(limit.count()) + " " + text).c_str(),
                     [](void* result, const char* received) { *static_cast<std::string*>(result) = received; },
                     &answer);
    } else {
        const UniqueHandle pipe = connect(pipeName, deadline);
        const auto left = std::max(std::chrono::duration_cast<milliseconds>(deadline - Clock::now()), milliseconds(0));
        answer = transact(pipe.get(), std::to_string(left.count()) + " " + text, left);
    }
    const std::string ok = "ok\n";
    if (!answer.starts_with(ok)) {
        const std::string error = "error ";
        throw std::runtime_error(answer.starts_with(error) ? answer.substr(error.size()) : answer);
    }
    return answer.substr(ok.size());
}

} // namespace brisk::standin
