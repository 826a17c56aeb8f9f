#include "toast/DynamicFunctions.h"

namespace WinToastLib {

namespace {

template <class Function>
bool find(const wchar_t* library, const char* name, Function& function) {
    // The libraries are the system's own and stay loaded for the life of the process.
    const HMODULE module = LoadLibraryExW(library, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    function = module ? reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name))) : nullptr;
    return function != nullptr;
}

} // namespace

bool DynamicFunctions::resolve() {
    return find(L"SHELL32.DLL", "SetCurrentProcessExplicitAppUserModelID", setCurrentProcessExplicitAppUserModelID) &&
           find(L"PROPSYS.DLL", "PropVariantToString", propVariantToString) &&
           find(L"COMBASE.DLL", "RoGetActivationFactory", roGetActivationFactory) &&
           find(L"COMBASE.DLL", "WindowsCreateStringReference", windowsCreateStringReference) &&
           find(L"COMBASE.DLL", "WindowsGetStringRawBuffer", windowsGetStringRawBuffer) &&
           find(L"COMBASE.DLL", "WindowsDeleteString", windowsDeleteString);
}

} // namespace WinToastLib
