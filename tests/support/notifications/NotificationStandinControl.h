// Steers the notification stand-in from a test: in the test's own process or in a service that loaded it.
#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include <windows.h>

#include "NotificationStandin.h"

namespace brisk::standin {

// Every operation throws std::runtime_error with the reason where it fails, and takes no longer than its limit.
inline constexpr std::chrono::milliseconds kDefaultLimit{10000};

// The stand-in as built beside this library.
std::filesystem::path standinDll();
// Has the DLL write, or remove, the registration of its runtime classes (for all users: in the Wine prefix).
void registerStandin(const std::filesystem::path& dll = standinDll());
void unregisterStandin(const std::filesystem::path& dll = standinDll());

// The record's lines without their ends; empty where the file does not exist yet.
std::vector<std::string> readRecord(const std::filesystem::path& file);
// Waits until the record has a line that starts with `start` and answers it.
std::string waitForRecordLine(const std::filesystem::path& file, const std::string& start,
                              std::chrono::milliseconds limit = kDefaultLimit);

class NotificationStandinControl {
public:
    struct EventResult {
        // The handlers that were called, and have returned.
        unsigned handlers;
        // The first failure that one of them answered, or S_OK.
        HRESULT result;
    };

    // The stand-in of another process, by its pipe: kPipeVariable of this process, or the fixed name. Each operation
    // waits within its limit for a process that has the pipe open.
    NotificationStandinControl();
    explicit NotificationStandinControl(std::wstring pipe);
    // The stand-in in this process, which is loaded from `dll` where it is not loaded yet.
    static NotificationStandinControl inProcess(const std::filesystem::path& dll = standinDll());

    // The toasts shown, one line each.
    std::vector<std::string> list(std::chrono::milliseconds limit = kDefaultLimit) const;
    // Returns when Show has succeeded `count` times.
    void waitForShows(unsigned count, std::chrono::milliseconds limit = kDefaultLimit) const;
    // Returns when every event raised so far has been delivered.
    void waitUntilIdle(std::chrono::milliseconds limit = kDefaultLimit) const;

    // What the user does with notification `number`; each returns when the handlers have returned.
    EventResult press(unsigned number, unsigned button, std::chrono::milliseconds limit = kDefaultLimit) const;
    EventResult clickBody(unsigned number, std::chrono::milliseconds limit = kDefaultLimit) const;
    EventResult dismiss(unsigned number, unsigned reason, std::chrono::milliseconds limit = kDefaultLimit) const;
    EventResult fail(unsigned number, HRESULT error, std::chrono::milliseconds limit = kDefaultLimit) const;
    // Arguments that no button of the toast has (UTF-8); the toast stays.
    EventResult activate(unsigned number, const std::string& arguments,
                         std::chrono::milliseconds limit = kDefaultLimit) const;

    // Replaces the injected failures; grammar in NotificationStandin.h.
    void setFailures(const std::string& rules) const;
    // The stand-in's COM objects that are alive when every event raised so far has been delivered.
    long liveObjects() const;
    // Forgets toasts, counts and failures; numbers start at 1 again.
    void reset() const;

    // Any command of the grammar; answers its output.
    std::string command(const std::string& text, std::chrono::milliseconds limit = kDefaultLimit) const;

private:
    explicit NotificationStandinControl(CommandFunction* function) : localCommand(function) {}
    EventResult raiseEvent(const std::string& text, std::chrono::milliseconds limit) const;

    std::wstring pipeName;
    CommandFunction* localCommand = nullptr;
};

} // namespace brisk::standin
