#include "tools/log/StartedProgram.h"

#include "base/TextEncoding.h"

#include <stdexcept>

#include <windows.h>

namespace brisk::logbook {

std::string joinCommandLine(const std::vector<std::string>& words) {
    std::string line;
    for (const std::string& word : words) {
        line += line.empty() ? "" : " ";
        if (!word.empty() && word.find_first_of(" \t\"") == std::string::npos) {
            line += word;
            continue;
        }
        line += '"';
        std::size_t backslashes = 0;
        for (const char byte : word) {
            if (byte == '\\') {
                ++backslashes;
                continue;
            }
            // Backslashes count twice in front of a quotation mark only.
            line.append(byte == '"' ? backslashes * 2 + 1 : backslashes, '\\');
            backslashes = 0;
            line += byte;
        }
        line.append(backslashes * 2, '\\');
        line += '"';
    }
    return line;
}

StartedProgram startSuspended(const std::vector<std::string>& command) {
    std::wstring line = toWide(joinCommandLine(command));
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION information{};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, CREATE_SUSPENDED, nullptr, nullptr, &startup,
                        &information)) {
        throw std::runtime_error(command.front() + " cannot be started, error " + std::to_string(GetLastError()));
    }
    StartedProgram started;
    started.processId = information.dwProcessId;
    started.process.reset(information.hProcess);
    started.thread.reset(information.hThread);
    return started;
}

} // namespace brisk::logbook
