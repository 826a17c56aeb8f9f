// Drives brisk.exe from outside, as a host does.
#pragma once

#include "BriskHost.h"
#include "base/WindowsHandles.h"
#include "support/Sandbox.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace brisk::testing {

// How long waitUntil and a Service's operations wait: ten seconds unless this was called.
void setWaitLimit(std::chrono::seconds limit);

// Waits until the condition holds; throws std::runtime_error naming what was waited for after the limit.
void waitUntil(const std::string& what, const std::function<bool()>& condition);

// The service in a folder of its own, with its log in a file there. Every operation that waits throws
// std::runtime_error after the limit. The process is ended with the object.
class Service {
public:
    // The folder holds the executable and, unless it is null, this title database.
    explicit Service(const char* titleDatabase);
    ~Service();
    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;

    // Starts the executable with the arguments; the log's path is added at the end.
    void start(const std::string& arguments = {});
    // Starts it and waits until its window exists.
    void startAndWait(const std::string& arguments = {});

    // Posts the message to the service's window.
    void post(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
    // Posts that many ticks of the tracking timer.
    void tick(unsigned count = 1) const;
    // Sends title information; DefWindowProc's answer.
    LRESULT sendTitleInfo(WPARAM tag, ULONG_PTR dataTag, const std::string& text) const;

    // No message is handled between the two calls: what is posted meanwhile is handled in one go, without a tick of
    // the real timer in between.
    void suspend() const;
    void resume() const;

    // Posts the quit message and waits for the end; the exit code.
    std::uint32_t quit();
    // Waits for the end; the exit code.
    std::uint32_t waitForEnd();
    bool isRunning() const;

    HWND window() const;
    std::uint32_t processId() const { return id; }

    // The log's lines so far, and from a line on.
    std::vector<std::string> log() const;
    std::vector<std::string> logFrom(std::size_t first) const;
    void waitForLog(const std::string& line) const;

    std::filesystem::path folder() const { return directory.path(); }
    std::filesystem::path logFile() const { return directory / "brisk.log"; }

private:
    TemporaryFolder directory;
    UniqueHandle process;
    UniqueHandle thread;
    std::uint32_t id = 0;
};

} // namespace brisk::testing
