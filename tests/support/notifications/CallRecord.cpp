#include "CallRecord.h"

#include <mutex>

#include <windows.h>

#include "NotificationStandin.h"
#include "Text.h"

namespace brisk::standin {

void recordLine(const std::string& line) {
    // Never destroyed: threads may still record while the process ends.
    static std::mutex& writing = *new std::mutex;
    const std::wstring path = environmentVariable(kRecordVariable);
    if (path.empty()) {
        return;
    }
    const std::string text = line + "\n";
    std::lock_guard lock(writing);
    // Shared for deletion, too: tests remove the file while the service still runs.
    HANDLE file = CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                              nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        OutputDebugStringA(("notification stand-in: cannot record: " + line).c_str());
        return;
    }
    DWORD written = 0;
    WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    CloseHandle(file);
}

} // namespace brisk::standin
