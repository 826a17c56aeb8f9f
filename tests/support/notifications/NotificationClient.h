// What the stand-in's own tests need to use it the way a service does.
#pragma once

#include <atomic>
#include <functional>
#include <string>

#include <windows.h>

#include <activation.h>
#include <roapi.h>
#include <winstring.h>

#include "base/WindowsHandles.h"
#include "toast/NotificationInterfaces.h"

namespace brisk::standin {

namespace abi = WinToastLib::abi;

class HString {
public:
    explicit HString(const std::wstring& text) {
        WindowsCreateString(text.c_str(), static_cast<UINT32>(text.size()), &handle);
    }
    HString(const HString&) = delete;
    HString& operator=(const HString&) = delete;
    ~HString() { WindowsDeleteString(handle); }

    HSTRING get() const { return handle; }

private:
    HSTRING handle = nullptr;
};

// The outcome is in `result`.
template <class Interface>
ComReference<Interface> activationFactory(const wchar_t* runtimeClass, HRESULT& result) {
    ComReference<Interface> factory;
    result = RoGetActivationFactory(HString(runtimeClass).get(), Interface::kIid, factory.receiveVoid());
    return factory;
}

// Null where it is refused.
template <class Interface>
ComReference<Interface> activationFactory(const wchar_t* runtimeClass) {
    HRESULT result = S_OK;
    return activationFactory<Interface>(runtimeClass, result);
}

template <class Interface, class From>
ComReference<Interface> query(From* object) {
    ComReference<Interface> found;
    object->QueryInterface(Interface::kIid, found.receiveVoid());
    return found;
}

// An event handler that runs a function.
template <class Handler>
class TestHandler : public Handler {
public:
    using Function = std::function<HRESULT(abi::IToastNotification*, typename Handler::Arguments*)>;

    explicit TestHandler(Function whatToDo, bool isAgile = true) : function(std::move(whatToDo)), agile(isAgile) {}
    virtual ~TestHandler() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        const bool known =
            iid == __uuidof(IUnknown) || iid == Handler::kIid || (agile && iid == __uuidof(IAgileObject));
        *object = known ? this : nullptr;
        if (known) {
            AddRef();
        }
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references;
        if (left == 0) {
            delete this;
        }
        return left;
    }
    HRESULT STDMETHODCALLTYPE Invoke(abi::IToastNotification* sender, typename Handler::Arguments* arguments) override {
        return function(sender, arguments);
    }

private:
    const Function function;
    const bool agile;
    std::atomic<ULONG> references = 1;
};

using ActivatedHandler = TestHandler<abi::IActivatedHandler>;
using DismissedHandler = TestHandler<abi::IDismissedHandler>;
using FailedHandler = TestHandler<abi::IFailedHandler>;

} // namespace brisk::standin
