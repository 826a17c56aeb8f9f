#pragma once

#include <string>

#include "ComObject.h"

namespace brisk::standin {

// Windows.UI.Notifications.ToastNotifier of one application.
class ToastNotifier : public ComObject<abi::IToastNotifier> {
public:
    explicit ToastNotifier(std::wstring applicationId)
        : ComObject(L"Windows.UI.Notifications.ToastNotifier"), application(std::move(applicationId)) {}

    HRESULT STDMETHODCALLTYPE Show(abi::IToastNotification* notification) override;
    HRESULT STDMETHODCALLTYPE Hide(abi::IToastNotification* notification) override;
    HRESULT STDMETHODCALLTYPE get_Setting(INT32* setting) override;

private:
    const std::wstring application;
};

// Windows.UI.Notifications.ToastNotificationManager.
class ToastNotificationManager : public ComObject<IActivationFactory, abi::IToastNotificationManagerStatics> {
public:
    ToastNotificationManager() : ComObject(abi::kToastNotificationManagerClass) {}

    // The class has statics only.
    HRESULT STDMETHODCALLTYPE ActivateInstance(IInspectable** instance) override;
    // "Element not found", as for every program without a package identity.
    HRESULT STDMETHODCALLTYPE CreateToastNotifier(abi::IToastNotifier** notifier) override;
    HRESULT STDMETHODCALLTYPE CreateToastNotifierWithId(HSTRING applicationId, abi::IToastNotifier** notifier) override;
    HRESULT STDMETHODCALLTYPE GetTemplateContent(INT32 type, abi::IXmlDocument** content) override;
};

} // namespace brisk::standin
