#include "CommandPipe.h"

#include <string>

#include <windows.h>

#include "CallRecord.h"
#include "Commands.h"
#include "NotificationStandin.h"
#include "OwnThread.h"
#include "Text.h"

namespace brisk::standin {

namespace {

HANDLE createInstance() {
    const std::wstring chosen = environmentVariable(kPipeVariable);
    const std::wstring name = kPipePrefix + (chosen.empty() ? kDefaultPipe : chosen);
    HANDLE pipe = CreateNamedPipeW(name.c_str(), PIPE_ACCESS_DUPLEX,
                                   PIPE_TYPE_MESSAGE | PIPE_READMODE_MESSAGE | PIPE_WAIT | PIPE_REJECT_REMOTE_CLIENTS,
                                   PIPE_UNLIMITED_INSTANCES, kLongestMessage, kLongestMessage, 0, nullptr);
    if (pipe == INVALID_HANDLE_VALUE) {
        recordLine("Error cannot open " + toUtf8(name) + ": " + std::to_string(GetLastError()));
    }
    return pipe;
}

void serveClient(HANDLE pipe) {
    std::string message(kLongestMessage, '\0');
    DWORD size = 0;
    if (ReadFile(pipe, message.data(), kLongestMessage, &size, nullptr)) {
        const std::string answer = carryOut(message.substr(0, size));
        WriteFile(pipe, answer.data(), static_cast<DWORD>(answer.size()), &size, nullptr);
        // Ends when the client has closed its end: closing first could take the answer away from it.
        ReadFile(pipe, message.data(), kLongestMessage, &size, nullptr);
    }
    CloseHandle(pipe);
}

void serve(HANDLE pipe) {
    while (pipe != INVALID_HANDLE_VALUE) {
        const bool connected = ConnectNamedPipe(pipe, nullptr) || GetLastError() == ERROR_PIPE_CONNECTED;
        HANDLE next = createInstance();
        if (connected) {
            startThread([pipe] { serveClient(pipe); });
        } else {
            CloseHandle(pipe);
        }
        pipe = next;
    }
}

} // namespace

void openCommandPipe() {
    static const bool opened = [] {
        startThread([first = createInstance()] { serve(first); });
        return true;
    }();
    (void)opened;
}

} // namespace brisk::standin
