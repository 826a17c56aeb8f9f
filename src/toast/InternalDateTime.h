#pragma once

#include "toast/NotificationInterfaces.h"

#include <atomic>

namespace WinToastLib {

// A point in time as the notification system takes it (IReference<DateTime>).
class InternalDateTime final : public abi::IReferenceDateTime {
public:
    // 100-ns units since 1601-01-01 UTC. The creator holds the first reference.
    explicit InternalDateTime(INT64 universalTime) : time{universalTime} {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE GetIids(ULONG* count, IID** iids) override;
    HRESULT STDMETHODCALLTYPE GetRuntimeClassName(HSTRING* name) override;
    HRESULT STDMETHODCALLTYPE GetTrustLevel(TrustLevel* level) override;
    HRESULT STDMETHODCALLTYPE get_Value(abi::DateTime* value) override;

private:
    ~InternalDateTime() = default;

    std::atomic<ULONG> references{1};
    abi::DateTime time;
};

} // namespace WinToastLib
