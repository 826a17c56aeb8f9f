// All handles of the simulated process. A value is never given twice, so every use after closing is seen.
#pragma once

#include <any>
#include <vector>

#include <windows.h>

namespace brisk::host {

enum class HandleKind { Process, Event, File, Search, RegistryKey };

class Handles {
public:
    struct Entry {
        HandleKind kind;
        bool open;
        std::any object;
    };

    HANDLE open(HandleKind kind, std::any object);
    // The object of an open handle of the kind; null for any other value, which is a finding when it was closed.
    template <class Object>
    Object* find(HandleKind kind, HANDLE handle, const char* call) {
        Entry* entry = findOpen(kind, handle, call);
        return entry ? std::any_cast<Object>(&entry->object) : nullptr;
    }
    // False, and a finding, when it is not open.
    bool close(HandleKind kind, HANDLE handle, const char* call);

    unsigned count(HandleKind kind) const;
    HandleKind kindOf(HANDLE handle) const;
    // No finding for asking after a process by a closed handle: Brisk's tick may do so, and says so.
    bool wasClosed(HANDLE handle) const;

private:
    Entry* findEntry(HANDLE handle);
    Entry* findOpen(HandleKind kind, HANDLE handle, const char* call);

    std::vector<Entry> entries;
    unsigned openOf[5] = {};
};

Handles& handles();

} // namespace brisk::host
