#pragma once

#include "toast/NotificationInterfaces.h"

#include "base/WindowsHandles.h"

namespace brisk::testing {

// A notification whose events come without arguments and which keeps no handler alive for the time that it runs: one
// that is taken off then must hold itself.
class FakeNotification : public WinToastLib::abi::IToastNotification {
public:
    virtual ~FakeNotification() = default;

    HRESULT activate() { return raise(activated); }
    HRESULT dismiss() { return raise(dismissed); }
    HRESULT fail() { return raise(failed); }

    // The handler attached to the press.
    IUnknown& activatedHandler() const { return *activated.get(); }

    // A handler that was running would have been destroyed by its removal; it was left attached instead.
    bool wasRunningHandlerLost = false;

    HRESULT STDMETHODCALLTYPE add_Activated(WinToastLib::abi::IActivatedHandler* handler,
                                            EventRegistrationToken*) override {
        return attach(activated, handler);
    }
    HRESULT STDMETHODCALLTYPE add_Dismissed(WinToastLib::abi::IDismissedHandler* handler,
                                            EventRegistrationToken*) override {
        return attach(dismissed, handler);
    }
    HRESULT STDMETHODCALLTYPE add_Failed(WinToastLib::abi::IFailedHandler* handler, EventRegistrationToken*) override {
        return attach(failed, handler);
    }
    HRESULT STDMETHODCALLTYPE remove_Activated(EventRegistrationToken) override { return detach(activated); }
    HRESULT STDMETHODCALLTYPE remove_Dismissed(EventRegistrationToken) override { return detach(dismissed); }
    HRESULT STDMETHODCALLTYPE remove_Failed(EventRegistrationToken) override { return detach(failed); }

    // It lives as long as who made it says.
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }

    // Not called.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIids(ULONG*, IID**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetRuntimeClassName(HSTRING*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTrustLevel(TrustLevel*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Content(WinToastLib::abi::IXmlDocument**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_ExpirationTime(WinToastLib::abi::IReferenceDateTime*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_ExpirationTime(WinToastLib::abi::IReferenceDateTime**) override { return E_NOTIMPL; }

private:
    template <class Handler>
    static HRESULT attach(ComReference<Handler>& held, Handler* handler) {
        handler->AddRef();
        held = ComReference<Handler>(handler);
        return S_OK;
    }
    template <class Handler>
    HRESULT detach(ComReference<Handler>& held) {
        if (held && held.get() == running) {
            held->AddRef();
            if (held->Release() == 1) {
                wasRunningHandlerLost = true;
                return E_UNEXPECTED;
            }
        }
        const ComReference<Handler> taken = std::move(held);
        return S_OK;
    }
    template <class Handler>
    HRESULT raise(const ComReference<Handler>& held) {
        Handler* const handler = held.get();
        running = handler;
        const HRESULT result = handler->Invoke(this, nullptr);
        running = nullptr;
        return result;
    }

    IUnknown* running = nullptr;

    ComReference<WinToastLib::abi::IActivatedHandler> activated;
    ComReference<WinToastLib::abi::IDismissedHandler> dismissed;
    ComReference<WinToastLib::abi::IFailedHandler> failed;
};

} // namespace brisk::testing
