#include "service/Service.h"

#include "support/Places.h"
#include "support/Processes.h"

#include <stdexcept>
#include <thread>

namespace brisk::testing {

namespace {

std::chrono::seconds waitLimit{10};

} // namespace

void setWaitLimit(std::chrono::seconds limit) {
    waitLimit = limit;
}

void waitUntil(const std::string& what, const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + waitLimit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            throw std::runtime_error("waited in vain: " + what);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

Service::Service(const char* titleDatabase) {
    std::filesystem::copy_file(place(BRISK_EXECUTABLE), directory / "brisk.exe");
    if (titleDatabase) {
        writeFile(directory / "titles_db.json", titleDatabase);
    }
}

Service::~Service() {
    if (process && isRunning()) {
        TerminateProcess(process.get(), 99);
        WaitForSingleObject(process.get(), INFINITE);
    }
}

void Service::start(const std::string& arguments) {
    const std::wstring program = (directory / "brisk.exe").native();
    const PROCESS_INFORMATION started =
        startProcess(program, L"\"" + program + L"\" " + std::wstring(arguments.begin(), arguments.end()) + L" -log " +
                                  logFile().native());
    process.reset(started.hProcess);
    thread.reset(started.hThread);
    id = started.dwProcessId;
}

void Service::startAndWait(const std::string& arguments) {
    start(arguments);
    waitUntil("the service's window", [this] { return window() != nullptr || !isRunning(); });
    if (!isRunning()) {
        throw std::runtime_error("the service has ended");
    }
}

void Service::post(UINT message, WPARAM wParam, LPARAM lParam) const {
    if (!PostMessageA(window(), message, wParam, lParam)) {
        throw std::runtime_error("the message cannot be posted");
    }
}

void Service::tick(unsigned count) const {
    for (unsigned i = 0; i < count; ++i) {
        post(WM_TIMER, 0, 0);
    }
}

LRESULT Service::sendTitleInfo(WPARAM tag, ULONG_PTR dataTag, const std::string& text) const {
    COPYDATASTRUCT data{dataTag, static_cast<DWORD>(text.size()), const_cast<char*>(text.data())};
    DWORD_PTR answer = 0;
    if (!SendMessageTimeoutA(window(), WM_COPYDATA, tag, reinterpret_cast<LPARAM>(&data), SMTO_NORMAL,
                             static_cast<UINT>(std::chrono::milliseconds(waitLimit).count()), &answer)) {
        throw std::runtime_error("waited in vain: the answer to title information");
    }
    return static_cast<LRESULT>(answer);
}

void Service::suspend() const {
    SuspendThread(thread.get());
}

void Service::resume() const {
    ResumeThread(thread.get());
}

std::uint32_t Service::quit() {
    post(BRISK_QUIT);
    return waitForEnd();
}

std::uint32_t Service::waitForEnd() {
    if (WaitForSingleObject(process.get(), static_cast<DWORD>(std::chrono::milliseconds(waitLimit).count())) !=
        WAIT_OBJECT_0) {
        throw std::runtime_error("waited in vain: the service's end");
    }
    DWORD exitCode = 0;
    GetExitCodeProcess(process.get(), &exitCode);
    return exitCode;
}

bool Service::isRunning() const {
    return WaitForSingleObject(process.get(), 0) == WAIT_TIMEOUT;
}

HWND Service::window() const {
    return FindWindowA(BRISK_WINDOW_CLASS, nullptr);
}

std::vector<std::string> Service::log() const {
    return std::filesystem::exists(logFile()) ? splitLines(readFile(logFile())) : std::vector<std::string>();
}

std::vector<std::string> Service::logFrom(std::size_t first) const {
    const std::vector<std::string> lines = log();
    return {lines.begin() + static_cast<std::ptrdiff_t>(std::min(first, lines.size())), lines.end()};
}

void Service::waitForLog(const std::string& line) const {
    waitUntil("log line: " + line, [&] {
        const std::vector<std::string> lines = log();
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    });
}

} // namespace brisk::testing
