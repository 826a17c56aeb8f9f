// What the DLL gives to COM, to regsvr32 and to NotificationStandinControl.
#include <algorithm>
#include <string>

#include <windows.h>

#include <olectl.h>

#include "CallRecord.h"
#include "Calls.h"
#include "CommandPipe.h"
#include "Commands.h"
#include "NotificationStandin.h"
#include "Text.h"
#include "ToastNotification.h"
#include "ToastNotificationManager.h"
#include "XmlDocument.h"
#include "base/WindowsHandles.h"

namespace brisk::standin {

namespace {

constexpr const wchar_t* kClasses[] = {abi::kToastNotificationManagerClass, abi::kToastNotificationClass,
                                       abi::kXmlDocumentClass};

std::wstring registrationKey(const wchar_t* runtimeClass) {
    return std::wstring(L"Software\\Microsoft\\WindowsRuntime\\ActivatableClassId\\") + runtimeClass;
}

HMODULE ownModule(DWORD flags) {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | flags, reinterpret_cast<LPCWSTR>(&ownModule), &module);
    return module;
}

std::wstring ownPath() {
    wchar_t path[MAX_PATH];
    const DWORD length = GetModuleFileNameW(ownModule(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT), path, MAX_PATH);
    return {path, length};
}

IActivationFactory* createFactory(const std::wstring& runtimeClass) {
    if (runtimeClass == abi::kToastNotificationManagerClass) {
        return new ToastNotificationManager;
    }
    if (runtimeClass == abi::kToastNotificationClass) {
        return new ToastNotificationFactory;
    }
    return new XmlDocumentFactory;
}

// Once for the process, before the first class is served.
bool start() {
    // A refused activation would unload the DLL under its threads.
    ownModule(GET_MODULE_HANDLE_EX_FLAG_PIN);
    openCommandPipe();
    const std::string& error = CallFailures::instance().environmentError();
    if (!error.empty()) {
        recordLine("Error " + error);
    }
    return error.empty();
}

} // namespace

} // namespace brisk::standin

using namespace brisk::standin;

// NOLINTNEXTLINE(readability-identifier-naming): Windows' own name
STDAPI DllGetActivationFactory(HSTRING classId, IActivationFactory** factory) {
    static const bool usable = start();
    const std::wstring runtimeClass = fromHString(classId);
    const std::string failureName = "Activate." + toUtf8(runtimeClass.substr(runtimeClass.rfind(L'.') + 1));
    HRESULT result = usable ? CallFailures::instance().next(failureName) : E_INVALIDARG;
    if (!factory) {
        result = E_POINTER;
    } else if (std::find(std::begin(kClasses), std::end(kClasses), runtimeClass) == std::end(kClasses)) {
        result = CLASS_E_CLASSNOTAVAILABLE;
    }
    if (SUCCEEDED(result)) {
        *factory = createFactory(runtimeClass);
    }
    recordCall("DllGetActivationFactory", toUtf8(runtimeClass), result);
    return result;
}

STDAPI DllCanUnloadNow() {
    return S_FALSE;
}

STDAPI DllRegisterServer() {
    const std::wstring path = ownPath();
    for (const wchar_t* runtimeClass : kClasses) {
        brisk::RegistryKey key;
        if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, registrationKey(runtimeClass).c_str(), 0, nullptr, 0, KEY_WRITE,
                            nullptr, key.receive(), nullptr) != ERROR_SUCCESS ||
            RegSetValueExW(key.get(), L"DllPath", 0, REG_SZ, reinterpret_cast<const BYTE*>(path.c_str()),
                           static_cast<DWORD>((path.size() + 1) * sizeof(wchar_t))) != ERROR_SUCCESS) {
            return SELFREG_E_CLASS;
        }
    }
    return S_OK;
}

STDAPI DllUnregisterServer() {
    for (const wchar_t* runtimeClass : kClasses) {
        const LSTATUS deleted = RegDeleteKeyW(HKEY_LOCAL_MACHINE, registrationKey(runtimeClass).c_str());
        if (deleted != ERROR_SUCCESS && deleted != ERROR_FILE_NOT_FOUND) {
            return SELFREG_E_CLASS;
        }
    }
    return S_OK;
}

extern "C" void NotificationStandinCommand(const char* message, void (*receive)(void* context, const char* answer),
                                           void* context) {
    receive(context, carryOut(message).c_str());
}
