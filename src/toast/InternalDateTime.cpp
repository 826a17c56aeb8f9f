#include "toast/InternalDateTime.h"

namespace WinToastLib {

namespace {

// Not in every import library.
constexpr IID kInspectableIid{0xaf86e2e0, 0xb12d, 0x4c6a, {0x9c, 0x5a, 0xd7, 0xaa, 0x65, 0x10, 0x1e, 0x90}};

} // namespace

HRESULT InternalDateTime::QueryInterface(REFIID iid, void** object) {
    if (!object) {
        return E_POINTER;
    }
    if (iid != IID_IUnknown && iid != kInspectableIid && iid != IID_IAgileObject &&
        iid != abi::IReferenceDateTime::kIid) {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    AddRef();
    *object = this;
    return S_OK;
}

ULONG InternalDateTime::Release() {
    const ULONG left = --references;
    if (left == 0) {
        delete this;
    }
    return left;
}

HRESULT InternalDateTime::GetIids(ULONG* count, IID** iids) {
    if (!count || !iids) {
        return E_POINTER;
    }
    *count = 0;
    *iids = nullptr;
    return S_OK;
}

HRESULT InternalDateTime::GetRuntimeClassName(HSTRING* name) {
    if (!name) {
        return E_POINTER;
    }
    *name = nullptr;
    return S_OK;
}

HRESULT InternalDateTime::GetTrustLevel(TrustLevel* level) {
    if (!level) {
        return E_POINTER;
    }
    *level = BaseTrust;
    return S_OK;
}

HRESULT InternalDateTime::get_Value(abi::DateTime* value) {
    if (!value) {
        return E_POINTER;
    }
    *value = time;
    return S_OK;
}

} // namespace WinToastLib
