#include "toast/ShellShortcut.h"

#include "base/WindowsHandles.h"

#include <filesystem>

#include <initguid.h>

#include <objbase.h>
#include <propsys.h>
#include <shlobj.h>

namespace WinToastLib {

namespace {

using brisk::ComReference;

constexpr DWORD kPathCharacters = 260;
constexpr wchar_t kProgramsFolder[] = L"\\Microsoft\\Windows\\Start Menu\\Programs\\";
// System.AppUserModel.ID
constexpr PROPERTYKEY kAppUserModelId{{0x9F4C2855, 0x9F79, 0x4B39, {0xA8, 0xD0, 0xE1, 0xD4, 0x2D, 0xE1, 0xD5, 0xF3}},
                                      5};

template <class Interface, class Object>
HRESULT query(const ComReference<Object>& object, const IID& iid, ComReference<Interface>& result) {
    return object->QueryInterface(iid, result.receiveVoid());
}

// A new shell link with its two other faces.
struct LinkObject {
    ComReference<IShellLinkW> link;
    ComReference<IPersistFile> file;
    ComReference<IPropertyStore> properties;

    HRESULT create() {
        HRESULT result =
            CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, link.receiveVoid());
        if (SUCCEEDED(result)) {
            result = query(link, IID_IPersistFile, file);
        }
        if (SUCCEEDED(result)) {
            result = query(link, IID_IPropertyStore, properties);
        }
        return result;
    }
};

HRESULT writeId(const LinkObject& link, const std::wstring& id) {
    PROPVARIANT value{};
    value.vt = VT_LPWSTR;
    // The store copies the text; it is not the variant's to free.
    value.pwszVal = const_cast<wchar_t*>(id.c_str());
    const HRESULT result = link.properties->SetValue(kAppUserModelId, value);
    return SUCCEEDED(result) ? link.properties->Commit() : result;
}

HRESULT readId(const DynamicFunctions& functions, const LinkObject& link, std::wstring& id) {
    PROPVARIANT value{};
    HRESULT result = link.properties->GetValue(kAppUserModelId, &value);
    if (FAILED(result)) {
        return result;
    }
    wchar_t text[kPathCharacters] = L"";
    result = functions.propVariantToString(value, text, kPathCharacters);
    PropVariantClear(&value);
    id = text;
    return result;
}

} // namespace

HRESULT getShortcutPath(const std::wstring& folder, const std::wstring& name, std::wstring& path) {
    path.clear();
    wchar_t appData[kPathCharacters] = L"";
    const DWORD length = GetEnvironmentVariableW(L"APPDATA", appData, kPathCharacters);
    if (length == 0 || length >= kPathCharacters) {
        return E_INVALIDARG;
    }
    const std::wstring whole = appData + (kProgramsFolder + folder) + L"\\" + name + L".lnk";
    if (whole.size() >= kPathCharacters) {
        return E_INVALIDARG;
    }
    path = whole;
    return S_OK;
}

HRESULT validateShortcut(const DynamicFunctions& functions, const std::wstring& path, const std::wstring& id,
                         bool& changed) {
    changed = false;
    if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) {
        return E_FAIL;
    }
    LinkObject link;
    HRESULT result = link.create();
    if (SUCCEEDED(result)) {
        result = link.file->Load(path.c_str(), STGM_READWRITE);
    }
    std::wstring current;
    if (SUCCEEDED(result)) {
        result = readId(functions, link, current);
    }
    if (FAILED(result) || current == id) {
        return result;
    }
    changed = true;
    result = writeId(link, id);
    return SUCCEEDED(result) ? link.file->Save(path.c_str(), TRUE) : result;
}

HRESULT writeShortcut(const std::wstring& path, const std::wstring& id) {
    wchar_t executable[kPathCharacters] = L"";
    const DWORD length = GetModuleFileNameW(nullptr, executable, kPathCharacters);
    if (length == 0 || length >= kPathCharacters) {
        return E_FAIL;
    }
    LinkObject link;
    HRESULT result = link.create();
    if (SUCCEEDED(result)) {
        result = link.link->SetPath(executable);
    }
    if (SUCCEEDED(result)) {
        result = link.link->SetArguments(L"");
    }
    if (SUCCEEDED(result)) {
        result = link.link->SetWorkingDirectory(L"");
    }
    if (SUCCEEDED(result)) {
        result = writeId(link, id);
    }
    if (SUCCEEDED(result)) {
        // Exists already, or saving fails and says so.
        CreateDirectoryW(std::filesystem::path(path).parent_path().c_str(), nullptr);
        result = link.file->Save(path.c_str(), TRUE);
    }
    return result;
}

} // namespace WinToastLib
