#include "ToastNotification.h"

#include "Calls.h"
#include "EventArguments.h"
#include "NotificationList.h"
#include "Text.h"

namespace brisk::standin {

namespace {

class ExpirationTime : public ComObject<abi::IReferenceDateTime> {
public:
    explicit ExpirationTime(INT64 universalTime)
        : ComObject(L"Windows.Foundation.IReference`1<Windows.Foundation.DateTime>"), time{universalTime} {}

    HRESULT STDMETHODCALLTYPE get_Value(abi::DateTime* value) override {
        if (!value) {
            return E_POINTER;
        }
        *value = time;
        return S_OK;
    }

private:
    const abi::DateTime time;
};

template <class Interface>
Interface* addReference(Interface* object) {
    object->AddRef();
    return object;
}

template <class Arguments>
std::shared_ptr<ComReference<Arguments>> shared(Arguments* owned) {
    return std::make_shared<ComReference<Arguments>>(owned);
}

} // namespace

ToastNotification::ToastNotification(abi::IXmlDocument* content, unsigned itsNumber)
    : ComObject(abi::kToastNotificationClass), number(itsNumber), document(addReference(content)) {}

HRESULT ToastNotification::get_Content(abi::IXmlDocument** content) {
    return answer("get_Content", std::to_string(number), [&] {
        if (!content) {
            return E_POINTER;
        }
        *content = addReference(document.get());
        return S_OK;
    });
}

HRESULT ToastNotification::put_ExpirationTime(abi::IReferenceDateTime* time) {
    std::string arguments = std::to_string(number) + " none";
    return answer("put_ExpirationTime", arguments, [&] {
        abi::DateTime value{};
        if (time) {
            const HRESULT result = time->get_Value(&value);
            if (FAILED(result)) {
                return result;
            }
            arguments = std::to_string(number) + " " + std::to_string(value.UniversalTime);
        }
        std::lock_guard lock(mutex);
        expiration = time ? std::optional(value.UniversalTime) : std::nullopt;
        return S_OK;
    });
}

HRESULT ToastNotification::get_ExpirationTime(abi::IReferenceDateTime** time) {
    return answer("get_ExpirationTime", std::to_string(number), [&] {
        if (!time) {
            return E_POINTER;
        }
        std::lock_guard lock(mutex);
        *time = expiration ? new ExpirationTime(*expiration) : nullptr;
        return S_OK;
    });
}

HRESULT ToastNotification::add_Dismissed(abi::IDismissedHandler* handler, EventRegistrationToken* token) {
    return answer("add_Dismissed", std::to_string(number), [&] { return dismissed.add(handler, token); });
}

HRESULT ToastNotification::remove_Dismissed(EventRegistrationToken token) {
    return answer("remove_Dismissed", std::to_string(number), [&] { return dismissed.remove(token); });
}

HRESULT ToastNotification::add_Activated(abi::IActivatedHandler* handler, EventRegistrationToken* token) {
    return answer("add_Activated", std::to_string(number), [&] { return activated.add(handler, token); });
}

HRESULT ToastNotification::remove_Activated(EventRegistrationToken token) {
    return answer("remove_Activated", std::to_string(number), [&] { return activated.remove(token); });
}

HRESULT ToastNotification::add_Failed(abi::IFailedHandler* handler, EventRegistrationToken* token) {
    return answer("add_Failed", std::to_string(number), [&] { return failed.add(handler, token); });
}

HRESULT ToastNotification::remove_Failed(EventRegistrationToken token) {
    return answer("remove_Failed", std::to_string(number), [&] { return failed.remove(token); });
}

std::shared_ptr<const XmlElement> ToastNotification::toastElement() const {
    ComReference<IDocumentContent> content;
    document->QueryInterface(IDocumentContent::kIid, content.receiveVoid());
    std::shared_ptr<const XmlElement> root = content->root();
    return root && root->name == L"toast" ? root : nullptr;
}

std::future<EventResult> ToastNotification::raiseActivated(const std::wstring& arguments) {
    return EventThread::instance().post(
        activated.delivery(reference(), shared<IInspectable>(new ActivatedArguments(arguments))));
}

std::future<EventResult> ToastNotification::raiseDismissed(abi::DismissalReason reason) {
    return EventThread::instance().post(
        dismissed.delivery(reference(), shared<abi::IToastDismissedEventArgs>(new DismissedArguments(reason))));
}

std::future<EventResult> ToastNotification::raiseFailed(HRESULT error) {
    return EventThread::instance().post(
        failed.delivery(reference(), shared<abi::IToastFailedEventArgs>(new FailedArguments(error))));
}

std::shared_ptr<ComReference<abi::IToastNotification>> ToastNotification::reference() {
    return shared<abi::IToastNotification>(addReference(this));
}

HRESULT ToastNotificationFactory::ActivateInstance(IInspectable** instance) {
    return answer("ActivateInstance", toUtf8(abi::kToastNotificationClass),
                  [&] { return instance ? E_NOTIMPL : E_POINTER; });
}

HRESULT ToastNotificationFactory::CreateToastNotification(abi::IXmlDocument* content,
                                                          abi::IToastNotification** notification) {
    std::string arguments = "0";
    return answer("CreateToastNotification", arguments, [&] {
        if (!content || !notification) {
            return E_POINTER;
        }
        ComReference<IDocumentContent> own;
        if (FAILED(content->QueryInterface(IDocumentContent::kIid, own.receiveVoid()))) {
            return E_INVALIDARG;
        }
        auto* created = new ToastNotification(content, NotificationList::instance().nextNumber());
        arguments = std::to_string(created->getNumber());
        *notification = created;
        return S_OK;
    });
}

} // namespace brisk::standin
