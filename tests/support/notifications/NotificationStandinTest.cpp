#include "NotificationStandinTest.h"

#include "support/Wine.h"

#include <xmllite.h>

namespace brisk::standin {

namespace {

constexpr HRESULT kMalformed = static_cast<HRESULT>(WC_E_SYNTAX);

HRESULT loadXml(const std::wstring& xml) {
    auto factory = activationFactory<abi::IToastNotificationManagerStatics>(abi::kToastNotificationManagerClass);
    ComReference<abi::IXmlDocument> document;
    factory->GetTemplateContent(3, document.receive());
    return query<abi::IXmlDocumentIO>(document.get())->LoadXml(HString(xml).get());
}

class ExpirationAt : public abi::IReferenceDateTime {
public:
    virtual ~ExpirationAt() = default;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetIids(ULONG*, IID**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetRuntimeClassName(HSTRING*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTrustLevel(TrustLevel*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Value(abi::DateTime* value) override {
        value->UniversalTime = 133500000000000000;
        return S_OK;
    }
};

} // namespace

void NotificationStandinTest::SetUpTestSuite() {
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    SetEnvironmentVariableW(kPipeVariable, (L"standin-test-" + std::to_wstring(GetCurrentProcessId())).c_str());
    if (brisk::testing::isWine()) {
        registerStandin();
    }
}

void NotificationStandinTest::TearDownTestSuite() {
    if (brisk::testing::isWine()) {
        unregisterStandin();
    }
    CoUninitialize();
}

void NotificationStandinTest::SetUp() {
    if (!brisk::testing::needsWine("the stand-in is registered for all users")) {
        return;
    }
    std::filesystem::remove(record);
    SetEnvironmentVariableW(kRecordVariable, record.c_str());
}

void NotificationStandinTest::TearDown() {
    control.reset();
    EXPECT_EQ(control.liveObjects(), 0);
    SetEnvironmentVariableW(kRecordVariable, nullptr);
    std::filesystem::remove(record);
}

ComReference<abi::IXmlDocument> NotificationStandinTest::createDocument(const std::wstring& xml) const {
    auto factory = activationFactory<abi::IToastNotificationManagerStatics>(abi::kToastNotificationManagerClass);
    ComReference<abi::IXmlDocument> document;
    EXPECT_EQ(factory->GetTemplateContent(3, document.receive()), S_OK);
    EXPECT_EQ(query<abi::IXmlDocumentIO>(document.get())->LoadXml(HString(xml).get()), S_OK);
    return document;
}

ComReference<abi::IToastNotification> NotificationStandinTest::createNotification(const std::wstring& xml) const {
    auto factory = activationFactory<abi::IToastNotificationFactory>(abi::kToastNotificationClass);
    ComReference<abi::IToastNotification> notification;
    EXPECT_EQ(factory->CreateToastNotification(createDocument(xml).get(), notification.receive()), S_OK);
    return notification;
}

ComReference<abi::IToastNotifier> NotificationStandinTest::createNotifier() const {
    auto factory = activationFactory<abi::IToastNotificationManagerStatics>(abi::kToastNotificationManagerClass);
    ComReference<abi::IToastNotifier> notifier;
    EXPECT_EQ(factory->CreateToastNotifierWithId(HString(L"Some.Application").get(), notifier.receive()), S_OK);
    return notifier;
}

ComReference<abi::IToastNotification> NotificationStandinTest::showToast(const std::wstring& xml) const {
    auto notification = createNotification(xml);
    EXPECT_EQ(createNotifier()->Show(notification.get()), S_OK);
    return notification;
}

TEST_F(NotificationStandinTest, RefusesTextThatIsNotWellFormedXml) {
    const wchar_t* refused[] = {L"",
                                L"   ",
                                L"text",
                                L"<a>",
                                L"<a></b>",
                                L"<a><b></a>",
                                L"<a/><b/>",
                                L"<a/>text",
                                L"<1a/>",
                                L"<a b/>",
                                L"<a b=c/>",
                                L"<a b='1' b='2'/>",
                                L"<a b=\"a\"b\"/>",
                                L"<a b=\"<\"/>",
                                L"<a b='x & y'/>",
                                L"<a>x & y</a>",
                                L"<a>x < y</a>",
                                L"<a>&unknown;</a>",
                                L"<a>]]></a>",
                                L"<a>\x01</a>",
                                L"<a>\xFFFF</a>",
                                L"<a><!-- -- --></a>",
                                L"\n<?xml version=\"1.0\"?><a/>",
                                L"<!DOCTYPE a><a/>"};
    for (const wchar_t* xml : refused) {
        EXPECT_EQ(loadXml(xml), kMalformed) << ::testing::PrintToString(std::wstring(xml));
    }
}

TEST_F(NotificationStandinTest, LoadsWellFormedXml) {
    const wchar_t* accepted[] = {kTwoButtons,
                                 L"<a/>",
                                 L"<a>a > b &amp; &lt; &#65;</a>",
                                 L"<a x='a\"b'>\xA789\xFF80\x00FC</a>",
                                 L"<?xml version=\"1.0\" encoding=\"utf-8\"?><a>\xA789</a>",
                                 L"<a xml:lang='en'><![CDATA[x & y]]><!-- note --></a>",
                                 L"<x:a xmlns:x='urn:x' x:b='1'/>"};
    for (const wchar_t* xml : accepted) {
        EXPECT_EQ(loadXml(xml), S_OK) << ::testing::PrintToString(std::wstring(xml));
    }
}

TEST_F(NotificationStandinTest, RecordsEachCallInOneLine) {
    auto manager = activationFactory<abi::IToastNotificationManagerStatics>(abi::kToastNotificationManagerClass);
    ComReference<abi::IXmlDocument> document;
    manager->GetTemplateContent(3, document.receive());
    // Refused for its control character; the template's own content stays.
    query<abi::IXmlDocumentIO>(document.get())->LoadXml(HString(L"<toast>\n\\\t\x01\xD83D\xDE00</toast>").get());
    auto factory = activationFactory<abi::IToastNotificationFactory>(abi::kToastNotificationClass);
    ComReference<abi::IToastNotification> notification;
    factory->CreateToastNotification(document.get(), notification.receive());
    ExpirationAt time;
    notification->put_ExpirationTime(&time);
    ComReference<ActivatedHandler> handler(new ActivatedHandler([](auto*, auto*) { return S_OK; }));
    EventRegistrationToken token{};
    notification->add_Activated(handler.get(), &token);
    auto notifier = createNotifier();
    notifier->Show(notification.get());
    notifier->Hide(notification.get());
    notification->remove_Activated(token);

    const std::vector<std::string> lines{
        "DllGetActivationFactory Windows.UI.Notifications.ToastNotificationManager",
        "GetTemplateContent 3",
        "LoadXml <toast>\\n\\\\\\t\\u0001\xF0\x9F\x98\x80</toast> -> 0xC00CEE2D",
        "DllGetActivationFactory Windows.UI.Notifications.ToastNotification",
        "CreateToastNotification 1",
        "put_ExpirationTime 1 133500000000000000",
        "add_Activated 1",
        "DllGetActivationFactory Windows.UI.Notifications.ToastNotificationManager",
        "CreateToastNotifierWithId Some.Application",
        "Show 1",
        "Hide 1",
        "remove_Activated 1",
    };
    EXPECT_EQ(readRecord(record), lines);
}

TEST_F(NotificationStandinTest, ServesTheThreeClassesAndNoOther) {
    HRESULT result = E_FAIL;
    auto factory = activationFactory<abi::IToastNotificationFactory>(abi::kToastNotificationManagerClass, result);
    EXPECT_EQ(result, E_NOINTERFACE);
    ComReference<IActivationFactory> documents;
    ASSERT_EQ(RoGetActivationFactory(HString(abi::kXmlDocumentClass).get(), __uuidof(IActivationFactory),
                                     documents.receiveVoid()),
              S_OK);
    ComReference<IInspectable> document;
    ASSERT_EQ(documents->ActivateInstance(document.receive()), S_OK);
    EXPECT_TRUE(query<abi::IXmlDocumentIO>(document.get()));
    HSTRING name = nullptr;
    document->GetRuntimeClassName(&name);
    EXPECT_STREQ(WindowsGetStringRawBuffer(name, nullptr), abi::kXmlDocumentClass);
    WindowsDeleteString(name);

    unregisterStandin();
    activationFactory<abi::IToastNotificationFactory>(abi::kToastNotificationClass, result);
    EXPECT_EQ(result, REGDB_E_CLASSNOTREG);
    registerStandin();
}

TEST_F(NotificationStandinTest, RefusesNullAndInvalidArguments) {
    auto manager = activationFactory<abi::IToastNotificationManagerStatics>(abi::kToastNotificationManagerClass);
    auto factory = activationFactory<abi::IToastNotificationFactory>(abi::kToastNotificationClass);
    auto document = createDocument(L"<toast/>");
    auto notification = createNotification();
    auto notifier = createNotifier();
    ComReference<abi::IToastNotifier> none;
    EventRegistrationToken token{};
    ComReference<FailedHandler> handler(new FailedHandler([](auto*, auto*) { return S_OK; }));

    EXPECT_EQ(manager->CreateToastNotifierWithId(HString(L"Some.Application").get(), nullptr), E_POINTER);
    EXPECT_EQ(manager->CreateToastNotifierWithId(nullptr, none.receive()), E_INVALIDARG);
    EXPECT_EQ(manager->CreateToastNotifier(nullptr), E_POINTER);
    EXPECT_EQ(manager->CreateToastNotifier(none.receive()), HRESULT_FROM_WIN32(ERROR_NOT_FOUND));
    EXPECT_EQ(manager->GetTemplateContent(3, nullptr), E_POINTER);
    ComReference<abi::IXmlDocument> noDocument;
    EXPECT_EQ(manager->GetTemplateContent(8, noDocument.receive()), E_INVALIDARG);
    ComReference<abi::IToastNotification> noNotification;
    EXPECT_EQ(factory->CreateToastNotification(nullptr, noNotification.receive()), E_POINTER);
    EXPECT_EQ(factory->CreateToastNotification(document.get(), nullptr), E_POINTER);
    EXPECT_EQ(notification->get_Content(nullptr), E_POINTER);
    EXPECT_EQ(notification->get_ExpirationTime(nullptr), E_POINTER);
    EXPECT_EQ(notification->add_Activated(nullptr, &token), E_POINTER);
    EXPECT_EQ(notification->add_Dismissed(nullptr, &token), E_POINTER);
    EXPECT_EQ(notification->add_Failed(nullptr, &token), E_POINTER);
    EXPECT_EQ(notification->add_Failed(handler.get(), nullptr), E_POINTER);
    EXPECT_EQ(notifier->Show(nullptr), E_POINTER);
    EXPECT_EQ(notifier->Hide(nullptr), E_POINTER);
    EXPECT_EQ(notifier->get_Setting(nullptr), E_POINTER);
    EXPECT_EQ(notification->QueryInterface(abi::IToastNotification::kIid, nullptr), E_POINTER);
    EXPECT_EQ(notifier->Show(createNotification(L"<note/>").get()), E_INVALIDARG);
}

TEST_F(NotificationStandinTest, RefusesHandlersThatAreNotAgile) {
    auto notification = createNotification();
    EventRegistrationToken token{};
    ComReference<ActivatedHandler> activated(new ActivatedHandler([](auto*, auto*) { return S_OK; }, false));
    ComReference<DismissedHandler> dismissed(new DismissedHandler([](auto*, auto*) { return S_OK; }, false));
    ComReference<FailedHandler> failed(new FailedHandler([](auto*, auto*) { return S_OK; }, false));

    EXPECT_EQ(notification->add_Activated(activated.get(), &token), REGDB_E_IIDNOTREG);
    EXPECT_EQ(notification->add_Dismissed(dismissed.get(), &token), REGDB_E_IIDNOTREG);
    EXPECT_EQ(notification->add_Failed(failed.get(), &token), REGDB_E_IIDNOTREG);
}

TEST_F(NotificationStandinTest, KeepsDocumentAndExpirationTimeOfANotification) {
    auto document = createDocument(L"<toast/>");
    auto factory = activationFactory<abi::IToastNotificationFactory>(abi::kToastNotificationClass);
    ComReference<abi::IToastNotification> notification;
    ASSERT_EQ(factory->CreateToastNotification(document.get(), notification.receive()), S_OK);

    ComReference<abi::IXmlDocument> content;
    ASSERT_EQ(notification->get_Content(content.receive()), S_OK);
    EXPECT_EQ(content.get(), document.get());

    ComReference<abi::IReferenceDateTime> before;
    EXPECT_EQ(notification->get_ExpirationTime(before.receive()), S_OK);
    EXPECT_EQ(before.get(), nullptr);
    ExpirationAt time;
    ASSERT_EQ(notification->put_ExpirationTime(&time), S_OK);
    ComReference<abi::IReferenceDateTime> after;
    ASSERT_EQ(notification->get_ExpirationTime(after.receive()), S_OK);
    abi::DateTime value{};
    EXPECT_EQ(after->get_Value(&value), S_OK);
    EXPECT_EQ(value.UniversalTime, 133500000000000000);
    EXPECT_EQ(notification->put_ExpirationTime(nullptr), S_OK);
    ComReference<abi::IReferenceDateTime> cleared;
    EXPECT_EQ(notification->get_ExpirationTime(cleared.receive()), S_OK);
    EXPECT_EQ(cleared.get(), nullptr);
}

TEST_F(NotificationStandinTest, CountsTheObjectsThatAreAlive) {
    EXPECT_EQ(control.liveObjects(), 0);
    auto notification = createNotification();
    EXPECT_EQ(control.liveObjects(), 2); // The notification keeps its document.
    auto notifier = createNotifier();
    EXPECT_EQ(control.liveObjects(), 3);
    notifier->Show(notification.get());
    notification = {};
    EXPECT_EQ(control.liveObjects(), 3); // A toast that is shown stays.
}

} // namespace brisk::standin
