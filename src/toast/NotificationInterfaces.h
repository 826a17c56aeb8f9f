// The Windows notification interfaces that the service calls, declared by hand: the cross compiler's headers do not
// have them. Slots that nobody uses are left out at the end; the order of those that stand here is the binary
// interface.
#pragma once

#include <windows.h>

#include <eventtoken.h>
#include <hstring.h>
#include <inspectable.h>

namespace WinToastLib::abi {

inline constexpr wchar_t kToastNotificationManagerClass[] = L"Windows.UI.Notifications.ToastNotificationManager";
inline constexpr wchar_t kToastNotificationClass[] = L"Windows.UI.Notifications.ToastNotification";
inline constexpr wchar_t kXmlDocumentClass[] = L"Windows.Data.Xml.Dom.XmlDocument";

// NOLINTBEGIN(readability-identifier-naming): Windows' own names.

// Time as the system counts it: 100-ns units since 1601-01-01 UTC.
struct DateTime {
    INT64 UniversalTime;
};

struct IReferenceDateTime : IInspectable {
    static constexpr IID kIid{0x5541d8a7, 0x497c, 0x5aa4, {0x86, 0xfc, 0x77, 0x13, 0xad, 0xbf, 0x2a, 0x2c}};
    virtual HRESULT STDMETHODCALLTYPE get_Value(DateTime* value) = 0;
};

struct IXmlDocument : IInspectable {
    static constexpr IID kIid{0xf7f3a506, 0x1e87, 0x42d6, {0xbc, 0xfb, 0xb8, 0xc8, 0x09, 0xfa, 0x54, 0x94}};
};

struct IXmlDocumentIO : IInspectable {
    static constexpr IID kIid{0x6cd0e74e, 0xee65, 0x4489, {0x9e, 0xbf, 0xca, 0x43, 0xe8, 0x7b, 0xa6, 0x37}};
    virtual HRESULT STDMETHODCALLTYPE LoadXml(HSTRING xml) = 0;
};

// Reasons of IToastDismissedEventArgs.
enum class DismissalReason : INT32 { UserCanceled = 0, ApplicationHidden = 1, TimedOut = 2 };

struct IToastActivatedEventArgs : IInspectable {
    static constexpr IID kIid{0xe3bf92f3, 0xc197, 0x436f, {0x82, 0x65, 0x06, 0x25, 0x82, 0x4f, 0x8d, 0xac}};
    virtual HRESULT STDMETHODCALLTYPE get_Arguments(HSTRING* arguments) = 0;
};

struct IToastDismissedEventArgs : IInspectable {
    static constexpr IID kIid{0x3f89d935, 0xd9cb, 0x4538, {0xa0, 0xf0, 0xff, 0xe7, 0x65, 0x99, 0x38, 0xf8}};
    virtual HRESULT STDMETHODCALLTYPE get_Reason(DismissalReason* reason) = 0;
};

struct IToastFailedEventArgs : IInspectable {
    static constexpr IID kIid{0x35176862, 0xcfd4, 0x44f8, {0xad, 0x64, 0xf5, 0x00, 0xfd, 0x89, 0x6c, 0x3b}};
    virtual HRESULT STDMETHODCALLTYPE get_ErrorCode(HRESULT* errorCode) = 0;
};

struct IToastNotification;

// The three event handlers derive from IUnknown only and must be agile: events arrive on the system's threads.
struct IActivatedHandler : IUnknown {
    static constexpr IID kIid{0xab54de2d, 0x97d9, 0x5528, {0xb6, 0xad, 0x10, 0x5a, 0xfe, 0x15, 0x65, 0x30}};
    using Arguments = IInspectable;
    virtual HRESULT STDMETHODCALLTYPE Invoke(IToastNotification* sender, IInspectable* arguments) = 0;
};

struct IDismissedHandler : IUnknown {
    static constexpr IID kIid{0x61c2402f, 0x0ed0, 0x5a18, {0xab, 0x69, 0x59, 0xf4, 0xaa, 0x99, 0xa3, 0x68}};
    using Arguments = IToastDismissedEventArgs;
    virtual HRESULT STDMETHODCALLTYPE Invoke(IToastNotification* sender, IToastDismissedEventArgs* arguments) = 0;
};

struct IFailedHandler : IUnknown {
    static constexpr IID kIid{0x95e3e803, 0xc969, 0x5e3a, {0x97, 0x53, 0xea, 0x2a, 0xd2, 0x2a, 0x9a, 0x33}};
    using Arguments = IToastFailedEventArgs;
    virtual HRESULT STDMETHODCALLTYPE Invoke(IToastNotification* sender, IToastFailedEventArgs* arguments) = 0;
};

struct IToastNotification : IInspectable {
    static constexpr IID kIid{0x997e2675, 0x059e, 0x4e60, {0x8b, 0x06, 0x17, 0x60, 0x91, 0x7c, 0x8b, 0x80}};
    virtual HRESULT STDMETHODCALLTYPE get_Content(IXmlDocument** content) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_ExpirationTime(IReferenceDateTime* time) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_ExpirationTime(IReferenceDateTime** time) = 0;
    virtual HRESULT STDMETHODCALLTYPE add_Dismissed(IDismissedHandler* handler, EventRegistrationToken* token) = 0;
    virtual HRESULT STDMETHODCALLTYPE remove_Dismissed(EventRegistrationToken token) = 0;
    virtual HRESULT STDMETHODCALLTYPE add_Activated(IActivatedHandler* handler, EventRegistrationToken* token) = 0;
    virtual HRESULT STDMETHODCALLTYPE remove_Activated(EventRegistrationToken token) = 0;
    virtual HRESULT STDMETHODCALLTYPE add_Failed(IFailedHandler* handler, EventRegistrationToken* token) = 0;
    virtual HRESULT STDMETHODCALLTYPE remove_Failed(EventRegistrationToken token) = 0;
};

struct IToastNotificationFactory : IInspectable {
    static constexpr IID kIid{0x04124b20, 0x82c6, 0x4229, {0xb1, 0x09, 0xfd, 0x9e, 0xd4, 0x66, 0x2b, 0x53}};
    virtual HRESULT STDMETHODCALLTYPE CreateToastNotification(IXmlDocument* content,
                                                              IToastNotification** notification) = 0;
};

struct IToastNotifier : IInspectable {
    static constexpr IID kIid{0x75927b93, 0x03f3, 0x41ec, {0x91, 0xd3, 0x6e, 0x5b, 0xac, 0x1b, 0x38, 0xe7}};
    virtual HRESULT STDMETHODCALLTYPE Show(IToastNotification* notification) = 0;
    virtual HRESULT STDMETHODCALLTYPE Hide(IToastNotification* notification) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Setting(INT32* setting) = 0;
};

struct IToastNotificationManagerStatics : IInspectable {
    static constexpr IID kIid{0x50ac103f, 0xd235, 0x4598, {0xbb, 0xef, 0x98, 0xfe, 0x4d, 0x1a, 0x3a, 0xd4}};
    virtual HRESULT STDMETHODCALLTYPE CreateToastNotifier(IToastNotifier** notifier) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateToastNotifierWithId(HSTRING applicationId, IToastNotifier** notifier) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetTemplateContent(INT32 type, IXmlDocument** content) = 0;
};

// NOLINTEND(readability-identifier-naming)

} // namespace WinToastLib::abi
