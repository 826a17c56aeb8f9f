#include "hostile/ProcessCounters.h"

#include "base/WindowsHandles.h"

#include <cstring>
#include <stdexcept>
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

// Wine leaves PrivateUsage of other processes at 0.
std::size_t countPrivateBytes(HANDLE process) {
    std::size_t bytes = 0;
    std::size_t allocation = 0; // of it, in the current allocation
    bool isStack = false;       // it has a guard page
    const void* allocationBase = nullptr;
    MEMORY_BASIC_INFORMATION region{};
    for (const char* place = nullptr; VirtualQueryEx(process, place, &region, sizeof region) != 0;
         place = static_cast<const char*>(region.BaseAddress) + region.RegionSize) {
        if (region.State == MEM_FREE || region.Type != MEM_PRIVATE) {
            continue;
        }
        if (region.AllocationBase != allocationBase) {
            bytes += isStack ? 0 : allocation;
            allocationBase = region.AllocationBase;
            allocation = 0;
            isStack = false;
        }
        if (region.State == MEM_COMMIT) {
            allocation += region.RegionSize;
            isStack = isStack || (region.Protect & PAGE_GUARD);
        }
    }
    return bytes + (isStack ? 0 : allocation);
}

// An entry of the whole system's list of handles, as Wine writes it.
struct SystemHandle {
    ULONG processId;
    BYTE type;
    BYTE flags;
    USHORT handle;
    void* object;
    ULONG access;
};

std::vector<SystemHandle> listHandles() {
    constexpr auto kSystemHandleInformation = static_cast<SYSTEM_INFORMATION_CLASS>(16);
    std::vector<SystemHandle> list(32768);
    const auto size = [&list] { return static_cast<ULONG>(list.size() * sizeof(SystemHandle)); };
    while (NtQuerySystemInformation(kSystemHandleInformation, list.data(), size(), nullptr) != 0) {
        if (list.size() > 16'000'000) {
            throw std::runtime_error("the system's handles cannot be listed");
        }
        list.resize(list.size() * 2);
    }
    // The number of entries stands in front of them.
    ULONG count = 0;
    std::memcpy(&count, list.data(), sizeof count);
    std::memmove(list.data(), reinterpret_cast<const char*>(list.data()) + alignof(SystemHandle),
                 count * sizeof(SystemHandle));
    list.resize(count);
    return list;
}

// By a handle of this process.
BYTE getType(const std::vector<SystemHandle>& list, HANDLE handle) {
    for (const SystemHandle& entry : list) {
        if (entry.processId == GetCurrentProcessId() && entry.handle == reinterpret_cast<std::uintptr_t>(handle)) {
            return entry.type;
        }
    }
    throw std::runtime_error("a handle of this process is not in the system's list");
}

// Wine does not implement GetProcessHandleCount.
void countHandles(std::uint32_t processId, HANDLE process, ProcessCounters& counters) {
    RegistryKey key;
    RegOpenKeyExA(HKEY_CURRENT_USER, "Software", 0, KEY_READ, key.receive());
    const std::vector<SystemHandle> list = listHandles();
    const BYTE keyType = getType(list, key.get());
    const BYTE processType = getType(list, process);
    for (const SystemHandle& entry : list) {
        if (entry.processId == processId) {
            ++(entry.type == keyType       ? counters.keyHandles
               : entry.type == processType ? counters.processHandles
                                           : counters.otherHandles);
        }
    }
}

PROCESS_MEMORY_COUNTERS readMemory(HANDLE process) {
    PROCESS_MEMORY_COUNTERS memory{};
    GetProcessMemoryInfo(process, &memory, sizeof memory);
    return memory;
}

} // namespace

ProcessCounters readCounters(std::uint32_t processId) {
    const UniqueHandle process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, processId));
    if (!process) {
        return {};
    }
    ProcessCounters counters;
    counters.privateBytes = countPrivateBytes(process.get());
    counters.workingSet = readMemory(process.get()).WorkingSetSize;
    counters.peakWorkingSet = readMemory(process.get()).PeakWorkingSetSize;
    countHandles(processId, process.get(), counters);
    counters.gdiObjects = countGdiObjects(process.get());
    counters.windows = countWindows(processId);
    counters.threads = countThreads(processId);
    return counters;
}

std::size_t readPeakWorkingSet(std::uint32_t processId) {
    const UniqueHandle process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, processId));
    return process ? readMemory(process.get()).PeakWorkingSetSize : 0;
}

} // namespace brisk::testing
