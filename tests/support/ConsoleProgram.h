// Runs a console program from a test.
#pragma once

#include "base/WindowsHandles.h"
#include "support/Processes.h"

#include <filesystem>
#include <functional>
#include <ostream>
#include <stdexcept>
#include <string>

#include <windows.h>

namespace brisk::testing {

inline constexpr DWORD kProgramLimitMilliseconds = 120'000;

struct Outcome {
    DWORD exitCode;
    std::string output;
    std::string errors;

    bool operator==(const Outcome&) const = default;
};

inline void PrintTo(const Outcome& outcome, std::ostream* stream) {
    *stream << "exit code " << outcome.exitCode << "\noutput:\n" << outcome.output << "errors:\n" << outcome.errors;
}

// One end for the child, one to read here.
struct Pipe {
    UniqueHandle readEnd;
    UniqueHandle writeEnd;

    Pipe() {
        HANDLE read = nullptr;
        HANDLE write = nullptr;
        if (!CreatePipe(&read, &write, nullptr, 1 << 16)) {
            throw std::runtime_error("CreatePipe failed");
        }
        readEnd.reset(read);
        writeEnd.reset(write);
        SetHandleInformation(write, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    }

    // Everything that was written, with plain line ends. The child has ended; what it started, as Wine's host of its
    // console, may live on and keep the pipe open.
    std::string text() {
        std::string all;
        char buffer[4096];
        DWORD count = 0;
        while (PeekNamedPipe(readEnd.get(), nullptr, 0, nullptr, &count, nullptr) && count > 0 &&
               ReadFile(readEnd.get(), buffer, sizeof buffer, &count, nullptr)) {
            all.append(buffer, count);
        }
        std::erase(all, '\r');
        return all;
    }
};

inline void handleMessages() {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        DispatchMessageA(&message);
    }
}

// Handles what windows of this thread get until the process has ended, and what it left behind.
inline void waitForEnd(HANDLE process) {
    const ULONGLONG end = GetTickCount64() + kProgramLimitMilliseconds;
    while (MsgWaitForMultipleObjects(1, &process, FALSE, kProgramLimitMilliseconds, QS_ALLINPUT) != WAIT_OBJECT_0) {
        if (GetTickCount64() >= end) {
            TerminateProcess(process, 1);
            throw std::runtime_error("the program did not end");
        }
        handleMessages();
    }
    handleMessages();
}

// Runs the program without a console; `meanwhile` is called once it has been started. Windows of this thread get their
// messages until it has ended.
inline Outcome runProgram(
    const std::filesystem::path& program, const std::wstring& arguments,
    const std::function<void()>& meanwhile = [] {}) {
    // What outlives the program, as a console's host, does not keep this one's own output open: the self-test's report,
    // to which nobody else could write.
    SetHandleInformation(GetStdHandle(STD_OUTPUT_HANDLE), HANDLE_FLAG_INHERIT, 0);
    SetHandleInformation(GetStdHandle(STD_ERROR_HANDLE), HANDLE_FLAG_INHERIT, 0);
    // Wine starts its desktop for the first who asks, and a desktop started by the program would keep its pipes open.
    GetDesktopWindow();
    Pipe output;
    Pipe errors;
    STARTUPINFOW startup{};
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = output.writeEnd.get();
    startup.hStdError = errors.writeEnd.get();
    const PROCESS_INFORMATION information =
        startProcess(program, L"\"" + program.native() + L"\" " + arguments, startup, true, CREATE_NO_WINDOW);
    CloseHandle(information.hThread);
    const UniqueHandle process(information.hProcess);
    meanwhile();
    waitForEnd(process.get());
    DWORD exitCode = 0;
    GetExitCodeProcess(process.get(), &exitCode);
    return {exitCode, output.text(), errors.text()};
}

} // namespace brisk::testing
