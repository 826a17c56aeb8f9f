#pragma once

#include <memory>
#include <optional>
#include <string>

#include "ComObject.h"
#include "EventHandlers.h"
#include "XmlDocument.h"

namespace brisk::standin {

class ToastNotification;

// How the stand-in recognises its own notifications.
struct IOwnNotification : IInspectable {
    static constexpr IID kIid{0x8a1f4c0e, 0x53ab, 0x4b0e, {0x93, 0x6d, 0x0e, 0x61, 0x4c, 0x2d, 0x77, 0xa4}};
    // Not counted.
    virtual ToastNotification* self() = 0;
};

// Windows.UI.Notifications.ToastNotification.
class ToastNotification : public ComObject<abi::IToastNotification, IOwnNotification> {
public:
    // `content` is kept, `itsNumber` names the notification in record and commands.
    ToastNotification(abi::IXmlDocument* content, unsigned itsNumber);

    HRESULT STDMETHODCALLTYPE get_Content(abi::IXmlDocument** content) override;
    HRESULT STDMETHODCALLTYPE put_ExpirationTime(abi::IReferenceDateTime* time) override;
    HRESULT STDMETHODCALLTYPE get_ExpirationTime(abi::IReferenceDateTime** time) override;
    HRESULT STDMETHODCALLTYPE add_Dismissed(abi::IDismissedHandler* handler, EventRegistrationToken* token) override;
    HRESULT STDMETHODCALLTYPE remove_Dismissed(EventRegistrationToken token) override;
    HRESULT STDMETHODCALLTYPE add_Activated(abi::IActivatedHandler* handler, EventRegistrationToken* token) override;
    HRESULT STDMETHODCALLTYPE remove_Activated(EventRegistrationToken token) override;
    HRESULT STDMETHODCALLTYPE add_Failed(abi::IFailedHandler* handler, EventRegistrationToken* token) override;
    HRESULT STDMETHODCALLTYPE remove_Failed(EventRegistrationToken token) override;
    ToastNotification* self() override { return this; }

    unsigned getNumber() const { return number; }
    // True once it was shown, also when it is gone again.
    std::atomic<bool> everShown = false;
    // The `toast` element of its document; null for a document without one.
    std::shared_ptr<const XmlElement> toastElement() const;

    // Each queues the event for the handlers attached at this moment.
    std::future<EventResult> raiseActivated(const std::wstring& arguments);
    std::future<EventResult> raiseDismissed(abi::DismissalReason reason);
    std::future<EventResult> raiseFailed(HRESULT error);

private:
    std::shared_ptr<ComReference<abi::IToastNotification>> reference();

    const unsigned number;
    const ComReference<abi::IXmlDocument> document;
    EventHandlers<abi::IActivatedHandler> activated;
    EventHandlers<abi::IDismissedHandler> dismissed;
    EventHandlers<abi::IFailedHandler> failed;
    std::mutex mutex;
    std::optional<INT64> expiration;
};

class ToastNotificationFactory : public ComObject<IActivationFactory, abi::IToastNotificationFactory> {
public:
    ToastNotificationFactory() : ComObject(abi::kToastNotificationClass) {}

    // A notification is made from a document only.
    HRESULT STDMETHODCALLTYPE ActivateInstance(IInspectable** instance) override;
    HRESULT STDMETHODCALLTYPE CreateToastNotification(abi::IXmlDocument* content,
                                                      abi::IToastNotification** notification) override;
};

} // namespace brisk::standin
