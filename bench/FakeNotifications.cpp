#include "toast/DynamicFunctions.h"
#include "toast/FakeNotification.h"
#include "toast/NotificationInterfaces.h"

// A notification system that shows nothing and costs next to nothing. This program's toasts find it instead of Windows'
// own, for the linker finds resolve() here.

namespace brisk::bench {

namespace {

using namespace WinToastLib::abi;

// Lives for ever.
template <class Interface>
class Fake : public Interface {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID /*iid*/, void** /*object*/) override { return E_NOTIMPL; }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetIids(ULONG* /*count*/, IID** /*iids*/) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetRuntimeClassName(HSTRING* /*name*/) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTrustLevel(TrustLevel* /*level*/) override { return E_NOTIMPL; }
};

// It lives as long as references are held, also by the toasts' table.
class Notification final : public testing::FakeNotification {
public:
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references;
        if (left == 0) {
            delete this;
        }
        return left;
    }

private:
    ULONG references = 1;
};

class DocumentIO final : public Fake<IXmlDocumentIO> {
public:
    HRESULT STDMETHODCALLTYPE LoadXml(HSTRING /*xml*/) override { return S_OK; }
};

class Document final : public Fake<IXmlDocument> {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID /*iid*/, void** object) override {
        static DocumentIO io;
        *object = &io;
        return S_OK;
    }
};

class Factory final : public Fake<IToastNotificationFactory> {
public:
    HRESULT STDMETHODCALLTYPE CreateToastNotification(IXmlDocument* /*content*/,
                                                      IToastNotification** notification) override {
        *notification = new Notification;
        return S_OK;
    }
};

class Notifier final : public Fake<IToastNotifier> {
public:
    HRESULT STDMETHODCALLTYPE Show(IToastNotification* /*notification*/) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Hide(IToastNotification* /*notification*/) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE get_Setting(INT32* /*setting*/) override { return E_NOTIMPL; }
};

class Statics final : public Fake<IToastNotificationManagerStatics> {
public:
    HRESULT STDMETHODCALLTYPE CreateToastNotifier(IToastNotifier** /*notifier*/) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CreateToastNotifierWithId(HSTRING /*id*/, IToastNotifier** notifier) override {
        static Notifier theNotifier;
        *notifier = &theNotifier;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTemplateContent(INT32 /*type*/, IXmlDocument** content) override {
        static Document document;
        *content = &document;
        return S_OK;
    }
};

} // namespace

} // namespace brisk::bench

namespace WinToastLib {

bool DynamicFunctions::resolve() {
    setCurrentProcessExplicitAppUserModelID = [](PCWSTR) { return S_OK; };
    roGetActivationFactory = [](HSTRING, REFIID iid, void** factory) {
        static brisk::bench::Statics statics;
        static brisk::bench::Factory notifications;
        const bool isManager = iid == abi::IToastNotificationManagerStatics::kIid;
        *factory = isManager ? static_cast<void*>(&statics) : &notifications;
        return S_OK;
    };
    windowsCreateStringReference = [](PCWSTR, UINT32, HSTRING_HEADER*, HSTRING*) { return S_OK; };
    return true;
}

} // namespace WinToastLib
