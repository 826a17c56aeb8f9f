#include "host/simulation/Handles.h"

#include "host/simulation/Findings.h"
#include "host/simulation/SimulatedCall.h"

namespace brisk::host {

namespace {

constexpr std::uintptr_t kFirst = 0x100;
constexpr std::uintptr_t kStep = 4;

std::size_t indexOf(HANDLE handle) {
    return (reinterpret_cast<std::uintptr_t>(handle) - kFirst) / kStep;
}

} // namespace

HANDLE Handles::open(HandleKind kind, std::any object) {
    entries.push_back({kind, true, std::move(object)});
    ++openOf[static_cast<int>(kind)];
    return reinterpret_cast<HANDLE>(kFirst + (entries.size() - 1) * kStep);
}

bool Handles::close(HandleKind kind, HANDLE handle, const char* call) {
    Entry* entry = findOpen(kind, handle, call);
    if (!entry) {
        SetLastError(ERROR_INVALID_HANDLE);
        return false;
    }
    entry->open = false;
    entry->object.reset();
    --openOf[static_cast<int>(kind)];
    return true;
}

unsigned Handles::count(HandleKind kind) const {
    return openOf[static_cast<int>(kind)];
}

bool Handles::wasClosed(HANDLE handle) const {
    const std::size_t index = indexOf(handle);
    return index < entries.size() && !entries[index].open;
}

HandleKind Handles::kindOf(HANDLE handle) const {
    const std::size_t index = indexOf(handle);
    return index < entries.size() ? entries[index].kind : HandleKind::File;
}

Handles::Entry* Handles::findEntry(HANDLE handle) {
    const std::size_t index = indexOf(handle);
    return index < entries.size() ? &entries[index] : nullptr;
}

Handles::Entry* Handles::findOpen(HandleKind kind, HANDLE handle, const char* call) {
    Entry* entry = findEntry(handle);
    if (entry && entry->kind == kind && entry->open) {
        return entry;
    }
    if (entry) {
        addFinding(std::string(call) + (entry->open ? ": a handle of another kind" : ": a closed handle"));
    }
    return nullptr;
}

Handles& handles() {
    static Handles all;
    return all;
}

} // namespace brisk::host

BOOL CloseHandle(HANDLE handle) {
    using namespace brisk::host;
    return simulate<CloseHandle>(
        [&]() -> BOOL {
            const HandleKind kind = handles().kindOf(handle);
            if (kind == HandleKind::Search || kind == HandleKind::RegistryKey) {
                addFinding("CloseHandle: a handle with a closing call of its own");
                return FALSE;
            }
            return handles().close(kind, handle, "CloseHandle");
        },
        handle);
}
