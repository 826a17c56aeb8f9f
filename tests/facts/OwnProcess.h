#pragma once

#include "base/WindowsHandles.h"
#include "support/Processes.h"

#include <filesystem>
#include <functional>
#include <string>

namespace brisk::facts {

inline constexpr DWORD kLimitMilliseconds = 120'000;

// Tries until it is so or the limit is reached.
inline bool waitUntil(const std::function<bool()>& isSo, DWORD milliseconds = kLimitMilliseconds) {
    const ULONGLONG begin = GetTickCount64();
    while (!isSo()) {
        if (GetTickCount64() - begin > milliseconds) {
            return false;
        }
        Sleep(20);
    }
    return true;
}

inline std::filesystem::path ownProgram() {
    wchar_t path[MAX_PATH];
    return {path, path + GetModuleFileNameW(nullptr, path, MAX_PATH)};
}

// A copy of this program that plays a part, or another program, without a console. Ended with this object.
class OwnProcess {
public:
    OwnProcess(const std::filesystem::path& program, const std::wstring& arguments) {
        const PROCESS_INFORMATION started =
            testing::startProcess(program, L"\"" + program.native() + L"\" " + arguments, {}, false, CREATE_NO_WINDOW);
        CloseHandle(started.hThread);
        process.reset(started.hProcess);
        processId = started.dwProcessId;
    }
    OwnProcess(const OwnProcess&) = delete;
    OwnProcess& operator=(const OwnProcess&) = delete;
    ~OwnProcess() {
        TerminateProcess(process.get(), 1);
        WaitForSingleObject(process.get(), kLimitMilliseconds);
    }

    DWORD id() const { return processId; }
    bool ends(DWORD milliseconds = kLimitMilliseconds) const {
        return WaitForSingleObject(process.get(), milliseconds) == WAIT_OBJECT_0;
    }
    DWORD exitCode() const {
        DWORD code = 0;
        GetExitCodeProcess(process.get(), &code);
        return code;
    }

private:
    UniqueHandle process;
    DWORD processId = 0;
};

} // namespace brisk::facts
