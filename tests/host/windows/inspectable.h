// The COM interfaces that the toast helper's header names. Nothing implements or calls them: on this side of the fence
// notifications are a model of the helper itself.
#pragma once

#include "hstring.h"
#include "windows.h"

struct IID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};
using REFIID = const IID&;

struct IUnknown {
    virtual HRESULT QueryInterface(REFIID iid, void** object) = 0;
    virtual ULONG AddRef() = 0;
    virtual ULONG Release() = 0;
};

enum TrustLevel { BaseTrust };

struct IInspectable : IUnknown {
    virtual HRESULT GetIids(ULONG* count, IID** iids) = 0;
    virtual HRESULT GetRuntimeClassName(HSTRING* name) = 0;
    virtual HRESULT GetTrustLevel(TrustLevel* level) = 0;
};
