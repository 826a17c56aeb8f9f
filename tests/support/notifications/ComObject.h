#pragma once

#include <atomic>
#include <string>
#include <tuple>
#include <utility>

#include <windows.h>

#include <activation.h>
#include <inspectable.h>
#include <winstring.h>

#include "CallFailures.h"
#include "toast/NotificationInterfaces.h"

namespace brisk::standin {

namespace abi = WinToastLib::abi;

// The stand-in's COM objects that are alive now.
inline std::atomic<long> liveObjects = 0;

template <class Interface>
struct InterfaceName {
    // Interfaces of the stand-in's own cannot be made to fail.
    static constexpr const char* kName = nullptr;
};
template <>
struct InterfaceName<IActivationFactory> {
    static constexpr const char* kName = "IActivationFactory";
};
template <>
struct InterfaceName<abi::IReferenceDateTime> {
    static constexpr const char* kName = "IReferenceDateTime";
};
template <>
struct InterfaceName<abi::IToastActivatedEventArgs> {
    static constexpr const char* kName = "IToastActivatedEventArgs";
};
template <>
struct InterfaceName<abi::IToastDismissedEventArgs> {
    static constexpr const char* kName = "IToastDismissedEventArgs";
};
template <>
struct InterfaceName<abi::IToastFailedEventArgs> {
    static constexpr const char* kName = "IToastFailedEventArgs";
};
template <>
struct InterfaceName<abi::IToastNotification> {
    static constexpr const char* kName = "IToastNotification";
};
template <>
struct InterfaceName<abi::IToastNotificationFactory> {
    static constexpr const char* kName = "IToastNotificationFactory";
};
template <>
struct InterfaceName<abi::IToastNotificationManagerStatics> {
    static constexpr const char* kName = "IToastNotificationManagerStatics";
};
template <>
struct InterfaceName<abi::IToastNotifier> {
    static constexpr const char* kName = "IToastNotifier";
};
template <>
struct InterfaceName<abi::IXmlDocument> {
    static constexpr const char* kName = "IXmlDocument";
};
template <>
struct InterfaceName<abi::IXmlDocumentIO> {
    static constexpr const char* kName = "IXmlDocumentIO";
};

template <class Interface>
const IID& iidOf() {
    return Interface::kIid;
}
template <>
inline const IID& iidOf<IActivationFactory>() {
    return __uuidof(IActivationFactory);
}

// A counted, agile object of the given runtime class; made with `new`, which gives the caller its one reference.
template <class... Interfaces>
class ComObject : public Interfaces... {
public:
    explicit ComObject(const wchar_t* runtimeClass) : className(runtimeClass) { ++liveObjects; }
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;
    virtual ~ComObject() { --liveObjects; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (!object) {
            return E_POINTER;
        }
        *object = nullptr;
        HRESULT result = E_NOINTERFACE;
        if (iid == __uuidof(IUnknown) || iid == __uuidof(IInspectable) || iid == __uuidof(IAgileObject)) {
            *object = static_cast<First*>(this);
            result = S_OK;
        } else {
            (void)(offer<Interfaces>(iid, object, result) || ...);
        }
        if (SUCCEEDED(result)) {
            AddRef();
        }
        return result;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references;
        if (left == 0) {
            delete this;
        }
        return left;
    }

    HRESULT STDMETHODCALLTYPE GetIids(ULONG* count, IID** iids) override {
        if (!count || !iids) {
            return E_POINTER;
        }
        *count = 0;
        *iids = nullptr;
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetRuntimeClassName(HSTRING* name) override {
        return WindowsCreateString(className, static_cast<UINT32>(wcslen(className)), name);
    }
    HRESULT STDMETHODCALLTYPE GetTrustLevel(TrustLevel* level) override {
        if (!level) {
            return E_POINTER;
        }
        *level = BaseTrust;
        return S_OK;
    }

private:
    using First = std::tuple_element_t<0, std::tuple<Interfaces...>>;

    template <class Interface>
    bool offer(REFIID iid, void** object, HRESULT& result) {
        if (iid != iidOf<Interface>()) {
            return false;
        }
        result = S_OK;
        if constexpr (InterfaceName<Interface>::kName != nullptr) {
            result = CallFailures::instance().next(std::string("QueryInterface.") + InterfaceName<Interface>::kName);
        }
        if (SUCCEEDED(result)) {
            *object = static_cast<Interface*>(this);
        }
        return true;
    }

    const wchar_t* const className;
    std::atomic<ULONG> references = 1;
};

} // namespace brisk::standin
