#pragma once

#include <windows.h>

#include <hstring.h>
#include <propidl.h>

namespace WinToastLib {

// System functions that not every Windows has, looked up at run time.
struct DynamicFunctions {
    HRESULT(WINAPI* setCurrentProcessExplicitAppUserModelID)(PCWSTR id) = nullptr;
    HRESULT(WINAPI* propVariantToString)(REFPROPVARIANT value, PWSTR text, UINT characters) = nullptr;
    HRESULT(WINAPI* roGetActivationFactory)(HSTRING classId, REFIID iid, void** factory) = nullptr;
    HRESULT(WINAPI* windowsCreateStringReference)
    (PCWSTR text, UINT32 length, HSTRING_HEADER* header, HSTRING* string) = nullptr;
    PCWSTR(WINAPI* windowsGetStringRawBuffer)(HSTRING string, UINT32* length) = nullptr;
    HRESULT(WINAPI* windowsDeleteString)(HSTRING string) = nullptr;

    // False when one of them is missing.
    bool resolve();
};

} // namespace WinToastLib
