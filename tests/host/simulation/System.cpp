#include "host/simulation/System.h"

#include "base/TextEncoding.h"
#include "host/simulation/Findings.h"
#include "host/simulation/Handles.h"
#include "host/simulation/SimulatedCall.h"
#include "support/ModuleNames.h"

#include <cstring>
#include <cwchar>

#include <shlobj.h>

namespace brisk::host {

System::System()
    : folders{{CSIDL_PROFILE, "C:\\Users\\Player"},
              {CSIDL_LOCAL_APPDATA, "C:\\Users\\Player\\AppData\\Local"},
              {CSIDL_APPDATA, "C:\\Users\\Player\\AppData\\Roaming"}},
      module("C:\\Program Files\\Brisk\\brisk.exe") {}

System& simulatedSystem() {
    static System theSystem;
    return theSystem;
}

} // namespace brisk::host

using namespace brisk::host;

HRESULT SHGetFolderPathW(HWND window, int csidl, HANDLE token, DWORD flags, LPWSTR path) {
    return simulate<SHGetFolderPathW>(
        [&]() -> HRESULT {
            const auto folder = simulatedSystem().folders.find(csidl);
            if (folder == simulatedSystem().folders.end()) {
                return E_FAIL;
            }
            std::wcscpy(path, brisk::toWide(folder->second).c_str());
            return S_OK;
        },
        window, csidl, token, flags, path);
}

DWORD GetModuleFileNameA(HMODULE module, LPSTR path, DWORD characters) {
    return simulate<GetModuleFileNameA>(
        [&] { return brisk::testing::giveNameAsWindows(simulatedSystem().module, path, characters); }, module, path,
        characters);
}

// The vendor's library is not on this machine.
HMODULE LoadLibraryExA(LPCSTR name, HANDLE reserved, DWORD flags) {
    return simulate<LoadLibraryExA>(
        []() -> HMODULE {
            SetLastError(ERROR_MOD_NOT_FOUND);
            return nullptr;
        },
        name, reserved, flags);
}

FARPROC GetProcAddress(HMODULE module, LPCSTR name) {
    return simulate<GetProcAddress>(
        [&]() -> FARPROC {
            // All that the toast helper's model looks up.
            if (std::strcmp(name, "RoGetActivationFactory") == 0) {
                return [] { return std::int64_t{0}; };
            }
            SetLastError(ERROR_PROC_NOT_FOUND);
            return nullptr;
        },
        module, name);
}

BOOL FreeLibrary(HMODULE module) {
    return simulate<FreeLibrary>(
        []() -> BOOL {
            addFinding("FreeLibrary: nothing is loaded");
            return FALSE;
        },
        module);
}

HANDLE CreateEventA(SECURITY_ATTRIBUTES* security, BOOL manualReset, BOOL signalled, LPCSTR name) {
    return simulate<CreateEventA>(
        [&] {
            simulatedSystem().events[name] = signalled;
            return handles().open(HandleKind::Event, std::string(name));
        },
        security, manualReset, signalled, name);
}

BOOL SetEvent(HANDLE event) {
    return simulate<SetEvent>(
        [&]() -> BOOL {
            const auto* name = handles().find<std::string>(HandleKind::Event, event, "SetEvent");
            if (!name) {
                return FALSE;
            }
            simulatedSystem().events[*name] = true;
            return TRUE;
        },
        event);
}

void OutputDebugStringA(LPCSTR text) {
    simulate<OutputDebugStringA>([&] { simulatedSystem().debuggerOutput.emplace_back(text); }, text);
}
