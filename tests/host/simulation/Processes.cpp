#include "host/simulation/Processes.h"

#include "base/TextEncoding.h"
#include "host/simulation/Desktop.h"
#include "host/simulation/Handles.h"
#include "host/simulation/SimulatedCall.h"
#include "support/ModuleNames.h"

#include <cstring>
#include <iomanip>
#include <sstream>

namespace brisk::host {

Processes& processes() {
    static Processes all;
    return all;
}

namespace {

struct OpenProcessHandle {
    DWORD processId;
    DWORD access;
};

void append(std::string& resource, const std::string& name, const std::string& data) {
    for (const std::string& part : {name, data}) {
        const WORD length = static_cast<WORD>(part.size());
        resource.append(reinterpret_cast<const char*>(&length), sizeof length).append(part);
    }
}

// Pairs of a sub-block's name and its data, each with its length before it.
std::string serialise(const VersionResource& version) {
    std::string resource;
    const WORD translation[] = {version.language, version.codePage};
    append(resource, "\\VarFileInfo\\Translation", {reinterpret_cast<const char*>(translation), sizeof translation});
    std::ostringstream block;
    block << "\\StringFileInfo\\" << std::hex << std::setfill('0') << std::setw(4) << version.language << std::setw(4)
          << version.codePage << '\\';
    for (const auto& [name, text] : version.strings) {
        const std::wstring wide = toWide(text);
        append(resource, block.str() + name,
               {reinterpret_cast<const char*>(wide.c_str()), (wide.size() + 1) * sizeof(wchar_t)});
    }
    append(resource, "", "");
    return resource;
}

// Reads one length and the text behind it, and goes on behind both.
std::string_view take(const char*& position) {
    WORD length = 0;
    std::memcpy(&length, position, sizeof length);
    const std::string_view text(position + sizeof length, length);
    position = text.data() + text.size();
    return text;
}

} // namespace

} // namespace brisk::host

using namespace brisk::host;

DWORD GetCurrentProcessId() {
    return Desktop::kOwnProcess;
}

HANDLE OpenProcess(DWORD access, BOOL inherit, DWORD processId) {
    return simulate<OpenProcess>(
        [&]() -> HANDLE {
            const auto process = processes().byId.find(processId);
            if (process == processes().byId.end()) {
                SetLastError(ERROR_INVALID_PARAMETER);
                return nullptr;
            }
            if (process->second.isProtected) {
                SetLastError(ERROR_ACCESS_DENIED);
                return nullptr;
            }
            return handles().open(HandleKind::Process, OpenProcessHandle{processId, access});
        },
        access, inherit, processId);
}

BOOL GetExitCodeProcess(HANDLE process, LPDWORD exitCode) {
    return simulate<GetExitCodeProcess>(
        [&]() -> BOOL {
            if (handles().wasClosed(process)) {
                ++processes().lateExitCodes;
                SetLastError(ERROR_INVALID_HANDLE);
                return FALSE;
            }
            const auto* open = handles().find<OpenProcessHandle>(HandleKind::Process, process, "GetExitCodeProcess");
            const auto found = open ? processes().byId.find(open->processId) : processes().byId.end();
            if (found == processes().byId.end() || !(open->access & PROCESS_QUERY_INFORMATION)) {
                SetLastError(open ? ERROR_ACCESS_DENIED : ERROR_INVALID_HANDLE);
                return FALSE;
            }
            *exitCode = found->second.exitCode;
            return TRUE;
        },
        process, exitCode);
}

DWORD K32GetModuleFileNameExA(HANDLE process, HMODULE module, LPSTR path, DWORD characters) {
    return simulate<K32GetModuleFileNameExA>(
        [&]() -> DWORD {
            constexpr DWORD kNeeded = PROCESS_QUERY_INFORMATION | PROCESS_VM_READ;
            const auto* open =
                handles().find<OpenProcessHandle>(HandleKind::Process, process, "K32GetModuleFileNameExA");
            const auto found = open ? processes().byId.find(open->processId) : processes().byId.end();
            if (found == processes().byId.end() || (open->access & kNeeded) != kNeeded) {
                SetLastError(ERROR_ACCESS_DENIED);
                return 0;
            }
            return brisk::testing::giveNameAsWindows(found->second.executable, path, characters);
        },
        process, module, path, characters);
}

DWORD GetFileVersionInfoSizeW(LPCWSTR path, LPDWORD ignored) {
    return simulate<GetFileVersionInfoSizeW>(
        [&]() -> DWORD {
            const auto version = processes().versions.find(brisk::toNarrow(path));
            if (version == processes().versions.end()) {
                SetLastError(ERROR_RESOURCE_TYPE_NOT_FOUND);
                return 0;
            }
            return static_cast<DWORD>(serialise(version->second).size());
        },
        path, ignored);
}

BOOL GetFileVersionInfoW(LPCWSTR path, DWORD handle, DWORD size, LPVOID resource) {
    return simulate<GetFileVersionInfoW>(
        [&]() -> BOOL {
            const auto version = processes().versions.find(brisk::toNarrow(path));
            if (version == processes().versions.end()) {
                return FALSE;
            }
            serialise(version->second).copy(static_cast<char*>(resource), size);
            return TRUE;
        },
        path, handle, size, resource);
}

BOOL VerQueryValueW(LPCVOID resource, LPCWSTR subBlock, LPVOID* value, UINT* length) {
    return simulate<VerQueryValueW>(
        [&]() -> BOOL {
            const std::string wanted = brisk::toNarrow(subBlock);
            const char* position = static_cast<const char*>(resource);
            for (;;) {
                const std::string_view name = take(position);
                const std::string_view data = take(position);
                if (name.empty()) {
                    return FALSE;
                }
                if (name == wanted) {
                    *value = const_cast<char*>(data.data());
                    *length = static_cast<UINT>(data.size());
                    return TRUE;
                }
            }
        },
        resource, subBlock, value, length);
}
