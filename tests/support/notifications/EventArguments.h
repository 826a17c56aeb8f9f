// The arguments of the three events.
#pragma once

#include <string>

#include "ComObject.h"

namespace brisk::standin {

class ActivatedArguments : public ComObject<abi::IToastActivatedEventArgs> {
public:
    explicit ActivatedArguments(std::wstring text)
        : ComObject(L"Windows.UI.Notifications.ToastActivatedEventArgs"), arguments(std::move(text)) {}

    HRESULT STDMETHODCALLTYPE get_Arguments(HSTRING* value) override {
        const HRESULT failure = CallFailures::instance().next("get_Arguments");
        if (FAILED(failure)) {
            return failure;
        }
        return WindowsCreateString(arguments.data(), static_cast<UINT32>(arguments.size()), value);
    }

private:
    const std::wstring arguments;
};

class DismissedArguments : public ComObject<abi::IToastDismissedEventArgs> {
public:
    explicit DismissedArguments(abi::DismissalReason why)
        : ComObject(L"Windows.UI.Notifications.ToastDismissedEventArgs"), reason(why) {}

    HRESULT STDMETHODCALLTYPE get_Reason(abi::DismissalReason* value) override {
        const HRESULT failure = CallFailures::instance().next("get_Reason");
        if (FAILED(failure)) {
            return failure;
        }
        if (!value) {
            return E_POINTER;
        }
        *value = reason;
        return S_OK;
    }

private:
    const abi::DismissalReason reason;
};

class FailedArguments : public ComObject<abi::IToastFailedEventArgs> {
public:
    explicit FailedArguments(HRESULT why) : ComObject(L"Windows.UI.Notifications.ToastFailedEventArgs"), error(why) {}

    HRESULT STDMETHODCALLTYPE get_ErrorCode(HRESULT* value) override {
        const HRESULT failure = CallFailures::instance().next("get_ErrorCode");
        if (FAILED(failure)) {
            return failure;
        }
        if (!value) {
            return E_POINTER;
        }
        *value = error;
        return S_OK;
    }

private:
    const HRESULT error;
};

} // namespace brisk::standin
