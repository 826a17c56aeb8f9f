#include "ToastNotificationManager.h"

#include "Calls.h"
#include "NotificationList.h"
#include "Text.h"
#include "ToastNotification.h"
#include "XmlDocument.h"
#include "base/WindowsHandles.h"

namespace brisk::standin {

namespace {

// What a notifier does with a notification, given as the stand-in's own object.
template <class Act>
HRESULT onNotification(const char* call, abi::IToastNotification* notification, Act act) {
    ComReference<IOwnNotification> own;
    if (notification) {
        notification->QueryInterface(IOwnNotification::kIid, own.receiveVoid());
    }
    const std::string number = own ? std::to_string(own->self()->getNumber()) : "0";
    return answer(call, number, [&] { return own ? act(own->self()) : notification ? E_INVALIDARG : E_POINTER; });
}

// Templates 0-3 have an image and one to three texts, 4-7 the same texts without it.
std::wstring templateDocument(INT32 type) {
    static constexpr int kTexts[] = {1, 2, 2, 3};
    const bool image = type < 4;
    std::wstring xml = L"<toast><visual><binding template=\"";
    xml += (image ? L"ToastImageAndText0" : L"ToastText0") + std::to_wstring(type % 4 + 1) + L"\">";
    xml += image ? L"<image id=\"1\" src=\"\"/>" : L"";
    for (int id = 1; id <= kTexts[type % 4]; ++id) {
        xml += L"<text id=\"" + std::to_wstring(id) + L"\"></text>";
    }
    return xml + L"</binding></visual></toast>";
}

} // namespace

HRESULT ToastNotifier::Show(abi::IToastNotification* notification) {
    ToastNotification* shown = nullptr;
    const HRESULT result = onNotification("Show", notification, [&](ToastNotification* own) {
        shown = own;
        return NotificationList::instance().show(own);
    });
    if (SUCCEEDED(result)) {
        // After the call's line, so that who waits for the toast finds the line, and what is drawn follows it.
        NotificationList::instance().shown(shown, application);
    }
    return result;
}

HRESULT ToastNotifier::Hide(abi::IToastNotification* notification) {
    return onNotification("Hide", notification,
                          [](ToastNotification* own) { return NotificationList::instance().hide(own); });
}

HRESULT ToastNotifier::get_Setting(INT32* setting) {
    return answer("get_Setting", "", [&] {
        if (!setting) {
            return E_POINTER;
        }
        *setting = 0; // Enabled.
        return S_OK;
    });
}

HRESULT ToastNotificationManager::ActivateInstance(IInspectable** instance) {
    return answer("ActivateInstance", toUtf8(abi::kToastNotificationManagerClass),
                  [&] { return instance ? E_NOTIMPL : E_POINTER; });
}

HRESULT ToastNotificationManager::CreateToastNotifier(abi::IToastNotifier** notifier) {
    return answer("CreateToastNotifier", "",
                  [&] { return notifier ? HRESULT_FROM_WIN32(ERROR_NOT_FOUND) : E_POINTER; });
}

HRESULT ToastNotificationManager::CreateToastNotifierWithId(HSTRING applicationId, abi::IToastNotifier** notifier) {
    const std::wstring application = fromHString(applicationId);
    return answer("CreateToastNotifierWithId", escaped(application), [&] {
        if (!notifier) {
            return E_POINTER;
        }
        if (application.empty()) {
            return E_INVALIDARG;
        }
        *notifier = new ToastNotifier(application);
        return S_OK;
    });
}

HRESULT ToastNotificationManager::GetTemplateContent(INT32 type, abi::IXmlDocument** content) {
    return answer("GetTemplateContent", std::to_string(type), [&] {
        if (!content) {
            return E_POINTER;
        }
        if (type < 0 || type > 7) {
            return E_INVALIDARG;
        }
        ComReference<XmlDocument> document(new XmlDocument);
        const HRESULT loaded = document->load(templateDocument(type));
        return SUCCEEDED(loaded) ? document->QueryInterface(abi::IXmlDocument::kIid, reinterpret_cast<void**>(content))
                                 : loaded;
    });
}

} // namespace brisk::standin
