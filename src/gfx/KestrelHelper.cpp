#include "gfx/KestrelHelper.h"

namespace brisk {

namespace {

constexpr char kLibrary[] = "orlankestrel64.dll";
// Neither the current directory nor PATH is searched.
constexpr DWORD kSearch = LOAD_LIBRARY_SEARCH_APPLICATION_DIR | LOAD_LIBRARY_SEARCH_USER_DIRS |
                          LOAD_LIBRARY_SEARCH_SYSTEM32 | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS;
// Major 1, minor 0, release 5, build 30.
constexpr std::uint64_t kRequestedVersion = 0x000100000005001E;

template <class Function>
void find(HMODULE module, const char* name, Function& function) {
    function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

} // namespace

KestrelHelper::~KestrelHelper() {
    terminate();
}

bool KestrelHelper::load() {
    if (!module) {
        module = LoadLibraryExA(kLibrary, nullptr, kSearch);
        if (!module) {
            return false;
        }
        find(module, "KestrelQueryFullVersion", queryFullVersion);
        find(module, "KestrelQueryVersion", queryVersion);
        find(module, "KestrelInitializeWithCallerTarn", initializeWithCallerTarn);
        find(module, "KestrelInitializeWithIncompatibleDriver", initializeWithIncompatibleDriver);
        find(module, "KestrelInitialize", initializeLibrary);
        find(module, "KestrelTerminate", terminateLibrary);
    }
    return queryFullVersion && queryVersion && initializeWithCallerTarn && initializeWithIncompatibleDriver &&
           initializeLibrary && terminateLibrary;
}

kestrel::Result KestrelHelper::initialize(void* tarnContext, void* tarnAdapter, bool useIncompatibleDriver) {
    if (!load()) {
        return kestrel::kFailure;
    }
    systemServices = {};
    queryFullVersion(&fullVersion);
    const char* text = nullptr;
    queryVersion(&text);
    version = text ? text : "";
    if (tarnContext && tarnAdapter) {
        return initializeWithCallerTarn(kRequestedVersion, systemServices.receive(), &tarnMapping, tarnContext,
                                        tarnAdapter);
    }
    return useIncompatibleDriver ? initializeWithIncompatibleDriver(kRequestedVersion, systemServices.receive())
                                 : initializeLibrary(kRequestedVersion, systemServices.receive());
}

kestrel::Result KestrelHelper::terminate() {
    if (!module) {
        return 0;
    }
    systemServices = {};
    tarnMapping = nullptr;
    const kestrel::Result result = terminateLibrary ? terminateLibrary() : 0;
    queryFullVersion = nullptr;
    queryVersion = nullptr;
    initializeWithCallerTarn = nullptr;
    initializeWithIncompatibleDriver = nullptr;
    initializeLibrary = nullptr;
    terminateLibrary = nullptr;
    FreeLibrary(module);
    module = nullptr;
    return result;
}

} // namespace brisk
