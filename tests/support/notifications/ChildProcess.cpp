#include "ChildProcess.h"

#include <stdexcept>

#include "base/WindowsHandles.h"

namespace brisk::standin {

namespace {

constexpr DWORD kLimit = 20000;
constexpr DWORD kLongestOutput = 64 * 1024;

} // namespace

ProcessResult runProcess(std::wstring commandLine) {
    HANDLE readEnd = nullptr;
    HANDLE writeEnd = nullptr;
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    CreatePipe(&readEnd, &writeEnd, &inherited, kLongestOutput);
    const UniqueHandle reader(readEnd);
    UniqueHandle writer(writeEnd);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = startup.hStdError = writeEnd;
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &started)) {
        throw std::runtime_error("CreateProcessW failed: error " + std::to_string(GetLastError()));
    }
    const UniqueHandle process(started.hProcess);
    const UniqueHandle thread(started.hThread);
    // The pipe holds all that the process writes, so it never waits for a reader.
    if (WaitForSingleObject(process.get(), kLimit) != WAIT_OBJECT_0) {
        TerminateProcess(process.get(), 1);
        throw std::runtime_error("the process did not end");
    }
    writer.reset();
    ProcessResult result{};
    GetExitCodeProcess(process.get(), &result.exitCode);
    char buffer[4096];
    DWORD size = 0;
    while (ReadFile(readEnd, buffer, sizeof buffer, &size, nullptr) && size > 0) {
        result.output.append(buffer, size);
    }
    std::erase(result.output, '\r');
    return result;
}

} // namespace brisk::standin
