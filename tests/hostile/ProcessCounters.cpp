#include "hostile/ProcessCounters.h"

#include "app/WindowsHandles.h"

#include <vector>

#include <windows.h>

#include <psapi.h>
#include <tlhelp32.h>
#include <winternl.h>

namespace brisk::testing {

namespace {

// Of the shared table of GDI handles; Wine gives each process one of its own and does not implement GetGuiResources.
struct GdiHandleEntry {
    std::uint64_t object;
    std::uint16_t owner[2];
    std::uint16_t upper;
    std::uint8_t type; // 0: the entry is free
    std::uint8_t flags;
    std::uint64_t user;
};
static_assert(sizeof(GdiHandleEntry) == 24);
constexpr std::size_t kGdiHandles = 16384;
constexpr std::size_t kGdiTableOffset = 0xF8; // of the table's address in the process's environment block

unsigned countGdiObjects(HANDLE process) {
    PROCESS_BASIC_INFORMATION information{};
    std::uint64_t table = 0;
    if (NtQueryInformationProcess(process, ProcessBasicInformation, &information, sizeof information, nullptr) != 0 ||
        !ReadProcessMemory(process, reinterpret_cast<const char*>(information.PebBaseAddress) + kGdiTableOffset, &table,
                           sizeof table, nullptr) ||
        table == 0) {
        return 0;
    }
    std::vector<GdiHandleEntry> entries(kGdiHandles);
    if (!ReadProcessMemory(process, reinterpret_cast<const void*>(table), entries.data(),
                           kGdiHandles * sizeof(GdiHandleEntry), nullptr)) {
        return 0;
    }
    unsigned count = 0;
    for (const GdiHandleEntry& entry : entries) {
        count += entry.type != 0;
    }
    return count;
}

struct WindowCount {
    DWORD processId;
    unsigned count;
};

BOOL CALLBACK countWindow(HWND window, LPARAM parameter) {
    auto& result = *reinterpret_cast<WindowCount*>(parameter);
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    result.count += owner == result.processId;
    return TRUE;
}

unsigned countWindows(std::uint32_t processId) {
    WindowCount result{processId, 0};
    const auto parameter = reinterpret_cast<LPARAM>(&result);
    EnumChildWindows(GetDesktopWindow(), countWindow, parameter);
    HWND window = nullptr;
    while ((window = FindWindowExA(HWND_MESSAGE, window, nullptr, nullptr)) != nullptr) {
        countWindow(window, parameter);
        EnumChildWindows(window, countWindow, parameter);
    }
    return result.count;
}

unsigned countThreads(std::uint32_t processId) {
    const UniqueHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    unsigned count = 0;
    for (BOOL more = Thread32First(snapshot.get(), &entry); more; more = Thread32Next(snapshot.get(), &entry)) {
        count += entry.th32OwnerProcessID == processId;
    }
    return count;
}

} // namespace

ProcessCounters readCounters(std::uint32_t processId) {
    ProcessCounters counters;
    const UniqueHandle process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, processId));
    PROCESS_MEMORY_COUNTERS_EX memory{};
    if (!process || !GetProcessMemoryInfo(process.get(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&memory),
                                          sizeof memory)) {
        return counters;
    }
    counters.privateBytes = memory.PrivateUsage;
    counters.peakBytes = memory.PeakWorkingSetSize;
    DWORD handles = 0;
    GetProcessHandleCount(process.get(), &handles);
    counters.handles = handles;
    counters.gdiObjects = countGdiObjects(process.get());
    counters.windows = countWindows(processId);
    counters.threads = countThreads(processId);
    return counters;
}

} // namespace brisk::testing
