// Injected failures.
#include "ChildProcess.h"
#include "NotificationStandinTest.h"

#include <array>

namespace brisk::standin {

namespace {

constexpr HRESULT kInjected = static_cast<HRESULT>(0x80071234);

using NotificationFailuresTest = NotificationStandinTest;

} // namespace

TEST_F(NotificationFailuresTest, EveryCallCanBeMadeToFail) {
    auto manager = activationFactory<abi::IToastNotificationManagerStatics>(abi::kToastNotificationManagerClass);
    auto factory = activationFactory<abi::IToastNotificationFactory>(abi::kToastNotificationClass);
    auto document = createDocument(kTwoButtons);
    auto notification = createNotification();
    auto notifier = createNotifier();
    ComReference<ActivatedHandler> activated(new ActivatedHandler([](auto*, auto*) { return S_OK; }));
    ComReference<DismissedHandler> dismissed(new DismissedHandler([](auto*, auto*) { return S_OK; }));
    ComReference<FailedHandler> failed(new FailedHandler([](auto*, auto*) { return S_OK; }));

    const auto activate = [](const wchar_t* runtimeClass) {
        ComReference<IUnknown> created;
        return RoGetActivationFactory(HString(runtimeClass).get(), __uuidof(IUnknown), created.receiveVoid());
    };
    const auto queried = []<class Interface>(auto& object, const Interface*) {
        ComReference<Interface> found;
        return object->QueryInterface(Interface::kIid, found.receiveVoid());
    };
    EventRegistrationToken token{};
    const struct {
        const char* call;
        std::function<HRESULT()> make;
    } calls[] = {
        {"Activate.ToastNotificationManager", [&] { return activate(abi::kToastNotificationManagerClass); }},
        {"Activate.ToastNotification", [&] { return activate(abi::kToastNotificationClass); }},
        {"Activate.XmlDocument", [&] { return activate(abi::kXmlDocumentClass); }},
        {"CreateToastNotifier",
         [&] { return manager->CreateToastNotifier(ComReference<abi::IToastNotifier>().receive()); }},
        {"CreateToastNotifierWithId",
         [&] {
             return manager->CreateToastNotifierWithId(HString(L"x").get(),
                                                       ComReference<abi::IToastNotifier>().receive());
         }},
        {"GetTemplateContent",
         [&] { return manager->GetTemplateContent(3, ComReference<abi::IXmlDocument>().receive()); }},
        {"LoadXml", [&] { return query<abi::IXmlDocumentIO>(document.get())->LoadXml(HString(kTwoButtons).get()); }},
        {"CreateToastNotification",
         [&] {
             return factory->CreateToastNotification(document.get(), ComReference<abi::IToastNotification>().receive());
         }},
        {"get_Content", [&] { return notification->get_Content(ComReference<abi::IXmlDocument>().receive()); }},
        {"put_ExpirationTime", [&] { return notification->put_ExpirationTime(nullptr); }},
        {"get_ExpirationTime",
         [&] { return notification->get_ExpirationTime(ComReference<abi::IReferenceDateTime>().receive()); }},
        {"add_Activated", [&] { return notification->add_Activated(activated.get(), &token); }},
        {"remove_Activated", [&] { return notification->remove_Activated(token); }},
        {"add_Dismissed", [&] { return notification->add_Dismissed(dismissed.get(), &token); }},
        {"remove_Dismissed", [&] { return notification->remove_Dismissed(token); }},
        {"add_Failed", [&] { return notification->add_Failed(failed.get(), &token); }},
        {"remove_Failed", [&] { return notification->remove_Failed(token); }},
        {"Show", [&] { return notifier->Show(notification.get()); }},
        {"Hide", [&] { return notifier->Hide(notification.get()); }},
        {"get_Setting",
         [&] {
             INT32 setting = 0;
             return notifier->get_Setting(&setting);
         }},
        {"QueryInterface.IXmlDocumentIO",
         [&] { return queried(document, static_cast<abi::IXmlDocumentIO*>(nullptr)); }},
        {"QueryInterface.IToastNotifier",
         [&] { return queried(notifier, static_cast<abi::IToastNotifier*>(nullptr)); }},
        {"QueryInterface.IToastNotificationFactory",
         [&] { return queried(factory, static_cast<abi::IToastNotificationFactory*>(nullptr)); }},
        {"QueryInterface.IToastNotificationManagerStatics",
         [&] { return queried(manager, static_cast<abi::IToastNotificationManagerStatics*>(nullptr)); }},
    };
    for (const auto& [call, make] : calls) {
        control.setFailures(std::string(call) + "=0x80071234");
        EXPECT_EQ(make(), kInjected) << call;
        control.setFailures("");
        EXPECT_NE(make(), kInjected) << call;
    }
}

TEST_F(NotificationFailuresTest, WhatAnEventTellsCanBeMadeToFail) {
    const auto notification = createNotification();
    auto notifier = createNotifier();
    ComReference<ActivatedHandler> activated(new ActivatedHandler([](auto*, IInspectable* arguments) {
        ComReference<abi::IToastActivatedEventArgs> event;
        const HRESULT found = arguments->QueryInterface(abi::IToastActivatedEventArgs::kIid, event.receiveVoid());
        HSTRING text = nullptr;
        return FAILED(found) ? found : event->get_Arguments(&text);
    }));
    ComReference<DismissedHandler> dismissed(new DismissedHandler([](auto*, abi::IToastDismissedEventArgs* arguments) {
        abi::DismissalReason reason{};
        return arguments->get_Reason(&reason);
    }));
    ComReference<FailedHandler> failed(new FailedHandler([](auto*, abi::IToastFailedEventArgs* arguments) {
        HRESULT error = S_OK;
        return arguments->get_ErrorCode(&error);
    }));
    EventRegistrationToken token{};
    notification->add_Activated(activated.get(), &token);
    notification->add_Dismissed(dismissed.get(), &token);
    notification->add_Failed(failed.get(), &token);
    notifier->Show(notification.get());

    control.setFailures("get_Arguments=0x80071234,get_Reason=0x80071234,get_ErrorCode=0x80071234");
    EXPECT_EQ(control.activate(1, "0").result, kInjected);
    EXPECT_EQ(control.dismiss(1, 2).result, kInjected);
    EXPECT_EQ(control.fail(1, E_FAIL).result, kInjected);

    control.setFailures("QueryInterface.IToastActivatedEventArgs=0x80071234");
    notifier->Show(notification.get());
    EXPECT_EQ(control.activate(1, "0").result, kInjected);
}

TEST_F(NotificationFailuresTest, CallFailsFromTheGivenTimeOn) {
    auto notifier = createNotifier();
    auto notification = createNotification();
    control.setFailures("Show:3=0x80070005");
    std::array<HRESULT, 4> results{};
    for (HRESULT& result : results) {
        result = notifier->Show(notification.get());
    }
    EXPECT_EQ(results, (std::array<HRESULT, 4>{S_OK, S_OK, E_ACCESSDENIED, E_ACCESSDENIED}));
    const std::vector<std::string> lines = readRecord(record);
    EXPECT_EQ(std::vector<std::string>(lines.end() - 4, lines.end()),
              (std::vector<std::string>{"Show 1", "Show 1", "Show 1 -> 0x80070005", "Show 1 -> 0x80070005"}));
}

TEST_F(NotificationFailuresTest, RulesThatMeanNothingAreRefused) {
    EXPECT_EQ(errorOf([&] { control.setFailures("Shw=0x80070005"); }), "unknown call in 'Shw=0x80070005'");
    EXPECT_EQ(errorOf([&] { control.setFailures("Hide=0x80070005,Show"); }),
              "no failure such as 0x80004005 after '=' in 'Show'");
    EXPECT_EQ(errorOf([&] { control.setFailures("Show=5"); }), "no failure such as 0x80004005 after '=' in 'Show=5'");
    EXPECT_EQ(errorOf([&] { control.setFailures("Show=0x00000001"); }),
              "no failure such as 0x80004005 after '=' in 'Show=0x00000001'");
    EXPECT_EQ(errorOf([&] { control.setFailures("Show:0=0x80070005"); }),
              "no count from 1 on after ':' in 'Show:0=0x80070005'");
}

// Runs in a process of its own, with the failures of its environment.
TEST(NotificationServiceProcess, DISABLED_ShowsTwoToasts) {
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    if (auto manager = activationFactory<abi::IToastNotificationManagerStatics>(abi::kToastNotificationManagerClass)) {
        for (int i = 0; i < 2; ++i) {
            ComReference<abi::IToastNotifier> notifier;
            manager->CreateToastNotifierWithId(HString(L"Some.Application").get(), notifier.receive());
        }
    }
}

TEST_F(NotificationFailuresTest, EnvironmentGivesTheFailuresOfANewProcess) {
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    const auto recordWith = [&](const wchar_t* failures) {
        std::filesystem::remove(record);
        SetEnvironmentVariableW(kFailVariable, failures);
        const ProcessResult result = runProcess(L"\"" + std::wstring(program) + L"\" --gtest_also_run_disabled_tests" +
                                                L" --gtest_filter=NotificationServiceProcess.*");
        SetEnvironmentVariableW(kFailVariable, nullptr);
        EXPECT_EQ(result.exitCode, 0u) << result.output;
        return readRecord(record);
    };
    using Lines = std::vector<std::string>;
    EXPECT_EQ(recordWith(L"CreateToastNotifierWithId:2=0x80070005"),
              (Lines{"DllGetActivationFactory Windows.UI.Notifications.ToastNotificationManager",
                     "CreateToastNotifierWithId Some.Application",
                     "CreateToastNotifierWithId Some.Application -> 0x80070005"}));
    EXPECT_EQ(recordWith(L"Sho=0x80070005"),
              (Lines{"Error NOTIFICATION_STANDIN_FAIL: unknown call in 'Sho=0x80070005'",
                     "DllGetActivationFactory Windows.UI.Notifications.ToastNotificationManager -> 0x80070057"}));
}

} // namespace brisk::standin
