#pragma once

#include "base/WindowsHandles.h"
#include "gfx/Kestrel.h"

#include <cstdint>
#include <string>

#include <windows.h>

namespace brisk {

// The vendor's device library: loaded at run time, started, stopped and unloaded. Window thread only.
class KestrelHelper {
public:
    KestrelHelper() = default;
    KestrelHelper(const KestrelHelper&) = delete;
    KestrelHelper& operator=(const KestrelHelper&) = delete;
    // Terminates and unloads what is loaded.
    virtual ~KestrelHelper();

    // Loads the library if it is not loaded and starts it; a failure when it or one of its entry points is missing.
    // Without arguments, as the service calls it, the library starts in its ordinary way; they choose one of
    // its two others.
    kestrel::Result initialize(void* tarnContext = nullptr, void* tarnAdapter = nullptr,
                               bool useIncompatibleDriver = false);
    // Stops and unloads the library; success when nothing is loaded.
    kestrel::Result terminate();

    // Valid between initialize and terminate; null otherwise.
    kestrel::ISystemServices* getSystemServices() const { return systemServices.get(); }

private:
    bool load();

    HMODULE module = nullptr;
    // As the library reports them. Not read: with them a dump of the process tells which library was loaded.
    std::uint64_t fullVersion = 0;
    std::string version;
    ComReference<kestrel::ISystemServices> systemServices;
    void* tarnMapping = nullptr;
    kestrel::KestrelQueryFullVersion queryFullVersion = nullptr;
    kestrel::KestrelQueryVersion queryVersion = nullptr;
    kestrel::KestrelInitializeWithCallerTarn initializeWithCallerTarn = nullptr;
    kestrel::KestrelInitializeWithIncompatibleDriver initializeWithIncompatibleDriver = nullptr;
    kestrel::KestrelInitialize initializeLibrary = nullptr;
    kestrel::KestrelTerminate terminateLibrary = nullptr;
};

} // namespace brisk
