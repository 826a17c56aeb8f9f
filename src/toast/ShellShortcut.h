#pragma once

#include "toast/DynamicFunctions.h"

#include <string>

namespace WinToastLib {

// The Start-menu shortcut that gives the process its notification identity. COM must be initialised.

// %APPDATA%\Microsoft\Windows\Start Menu\Programs\<folder>\<name>.lnk. E_INVALIDARG when the variable is missing or
// the path is longer than 259 characters; then the path is empty.
HRESULT getShortcutPath(const std::wstring& folder, const std::wstring& name, std::wstring& path);

// Makes sure that the shortcut at the path carries the AppUserModelID; `changed` tells whether it had to be written.
// Fails when there is no readable shortcut.
HRESULT validateShortcut(const DynamicFunctions& functions, const std::wstring& path, const std::wstring& id,
                         bool& changed);

// Writes a shortcut to the running executable, in a folder that is made when it is missing.
HRESULT writeShortcut(const std::wstring& path, const std::wstring& id);

} // namespace WinToastLib
