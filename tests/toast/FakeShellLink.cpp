#include "toast/FakeShellLink.h"

#include <filesystem>

#include <objbase.h>
#include <propsys.h>
#include <shlobj.h>

namespace brisk::testing {

namespace {

class FakeShellLink final : public IShellLinkW, public IPersistFile, public IPropertyStore {
public:
    explicit FakeShellLink(FakeShellLinks& owner) : links(owner) { ++links.alive; }
    FakeShellLink(const FakeShellLink&) = delete;
    FakeShellLink& operator=(const FakeShellLink&) = delete;
    virtual ~FakeShellLink() { --links.alive; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = nullptr;
        if (iid == IID_IShellLinkW) {
            *object = static_cast<IShellLinkW*>(this);
        } else if (iid == IID_IPersistFile && links.failing != "IPersistFile") {
            *object = static_cast<IPersistFile*>(this);
        } else if (iid == IID_IPropertyStore && links.failing != "IPropertyStore") {
            *object = static_cast<IPropertyStore*>(this);
        } else {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references;
        if (left == 0) {
            delete this;
        }
        return left;
    }

    HRESULT STDMETHODCALLTYPE SetPath(LPCWSTR path) override { return links.record("SetPath", path); }
    HRESULT STDMETHODCALLTYPE SetArguments(LPCWSTR text) override { return links.record("SetArguments", text); }
    HRESULT STDMETHODCALLTYPE SetWorkingDirectory(LPCWSTR folder) override {
        return links.record("SetWorkingDirectory", folder);
    }
    HRESULT STDMETHODCALLTYPE Load(LPCOLESTR path, DWORD mode) override {
        return mode == STGM_READWRITE ? links.record("Load", path) : E_INVALIDARG;
    }
    HRESULT STDMETHODCALLTYPE Save(LPCOLESTR path, BOOL remember) override {
        return remember ? links.record("Save", path) : E_INVALIDARG;
    }
    HRESULT STDMETHODCALLTYPE GetValue(REFPROPERTYKEY key, PROPVARIANT* value) override {
        const HRESULT result = checkKey(key, "GetValue");
        if (SUCCEEDED(result)) {
            const std::size_t size = (links.storedId.size() + 1) * sizeof(wchar_t);
            value->vt = VT_LPWSTR;
            value->pwszVal = static_cast<wchar_t*>(CoTaskMemAlloc(size));
            memcpy(value->pwszVal, links.storedId.c_str(), size);
        }
        return result;
    }
    HRESULT STDMETHODCALLTYPE SetValue(REFPROPERTYKEY key, REFPROPVARIANT value) override {
        return value.vt == VT_LPWSTR ? checkKey(key, "SetValue", value.pwszVal) : E_INVALIDARG;
    }
    HRESULT STDMETHODCALLTYPE Commit() override { return links.record("Commit"); }

    // Not called.
    HRESULT STDMETHODCALLTYPE GetPath(LPWSTR, int, WIN32_FIND_DATAW*, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDList(PIDLIST_ABSOLUTE*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetIDList(PCIDLIST_ABSOLUTE) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetDescription(LPWSTR, int) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetDescription(LPCWSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetWorkingDirectory(LPWSTR, int) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetArguments(LPWSTR, int) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetHotkey(WORD*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetHotkey(WORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetShowCmd(int*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetShowCmd(int) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIconLocation(LPWSTR, int, int*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetIconLocation(LPCWSTR, int) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetRelativePath(LPCWSTR, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Resolve(HWND, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetClassID(CLSID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE IsDirty() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SaveCompleted(LPCOLESTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetCurFile(LPOLESTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetCount(DWORD*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetAt(DWORD, PROPERTYKEY*) override { return E_NOTIMPL; }

private:
    HRESULT checkKey(REFPROPERTYKEY key, const std::string& call, const std::wstring& argument = {}) {
        // System.AppUserModel.ID
        const GUID format{0x9F4C2855, 0x9F79, 0x4B39, {0xA8, 0xD0, 0xE1, 0xD4, 0x2D, 0xE1, 0xD5, 0xF3}};
        return key.fmtid == format && key.pid == 5 ? links.record(call, argument) : E_INVALIDARG;
    }

    FakeShellLinks& links;
    ULONG references = 1;
};

} // namespace

FakeShellLinks::FakeShellLinks() {
    CoCreateInstanceFault.intercept([this](REFCLSID classId, LPUNKNOWN, DWORD, REFIID iid, LPVOID* object) {
        if (classId != CLSID_ShellLink || failing == "CoCreateInstance") {
            return REGDB_E_CLASSNOTREG;
        }
        auto* link = new FakeShellLink(*this);
        const HRESULT result = link->QueryInterface(iid, object);
        static_cast<IShellLinkW*>(link)->Release();
        return result;
    });
}

HRESULT FakeShellLinks::record(const std::string& name, const std::wstring& argument) {
    calls.push_back(name + (argument.empty() ? "" : " ") + std::filesystem::path(argument).string());
    return name == failing ? E_ACCESSDENIED : S_OK;
}

} // namespace brisk::testing
