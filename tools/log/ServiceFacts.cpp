#include "tools/log/ServiceFacts.h"

#include "tools/console/Files.h"
#include "tools/log/TitleFacts.h"

#include "BriskHost.h"
#include "base/Executables.h"
#include "base/TextEncoding.h"
#include "base/WindowsHandles.h"

#include <windows.h>

#include <winternl.h>

namespace brisk::logbook {

namespace {

constexpr DWORD kLongestPath = 32'768; // characters

std::string readPath(HANDLE process) {
    std::wstring path(kLongestPath, L'\0');
    DWORD size = kLongestPath;
    if (!QueryFullProcessImageNameW(process, 0, path.data(), &size)) {
        return {};
    }
    path.resize(size);
    return toNarrow(path);
}

// What lies at a place of the process; false where it cannot be read as a whole.
template <class Value>
bool readAt(HANDLE process, const void* place, Value& value, SIZE_T size = sizeof(Value)) {
    SIZE_T done = 0;
    return ReadProcessMemory(process, place, &value, size, &done) && done == size;
}

// It stands in the process's own memory alone.
std::string readCommandLine(std::uint32_t processId) {
    const UniqueHandle process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, processId));
    using Query = NTSTATUS(WINAPI*)(HANDLE, int, void*, ULONG, ULONG*);
    const auto query = reinterpret_cast<Query>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("ntdll.dll"), "NtQueryInformationProcess")));
    PROCESS_BASIC_INFORMATION basic{};
    PEB environment{};
    RTL_USER_PROCESS_PARAMETERS parameters{};
    if (!process || !query || query(process.get(), ProcessBasicInformation, &basic, sizeof basic, nullptr) < 0 ||
        !readAt(process.get(), basic.PebBaseAddress, environment) ||
        !readAt(process.get(), environment.ProcessParameters, parameters)) {
        return {};
    }
    std::wstring line(parameters.CommandLine.Length / sizeof(wchar_t), L'\0');
    if (line.empty() ||
        !readAt(process.get(), parameters.CommandLine.Buffer, line.front(), line.size() * sizeof(wchar_t))) {
        return {};
    }
    return toNarrow(line);
}

} // namespace

std::optional<std::uint32_t> findServiceProcess() {
    const HWND window = FindWindowA(BRISK_WINDOW_CLASS, nullptr);
    DWORD processId = 0;
    if (!window || GetWindowThreadProcessId(window, &processId) == 0) {
        return std::nullopt;
    }
    return processId;
}

ServiceFacts readServiceFacts(std::uint32_t processId) {
    ServiceFacts facts;
    facts.processId = processId;
    const UniqueHandle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, processId));
    if (!process) {
        return facts;
    }
    facts.path = readPath(process.get());
    facts.commandLine = readCommandLine(processId);
    if (facts.path.empty()) {
        return facts;
    }
    facts.fileVersion = getFileProperties(facts.path).fileVersion;
    facts.databasePath = facts.path.substr(0, facts.path.find_last_of("\\/") + 1) + "titles_db.json";
    facts.database = readFile(facts.databasePath);
    if (facts.database) {
        facts.titles = readDatabaseFacts(facts.databasePath, *facts.database).titles.size();
    }
    return facts;
}

} // namespace brisk::logbook
