// What users do with toasts, and the commands that do it for them.
#include <future>
#include <sstream>

#include "ChildProcess.h"
#include "NotificationStandinTest.h"
#include "support/Places.h"

namespace brisk::standin {

namespace {

using namespace std::chrono_literals;

constexpr HRESULT kNotificationHidden = static_cast<HRESULT>(0x803E0107);
constexpr HRESULT kNotificationNotPosted = static_cast<HRESULT>(0x803E0108);

std::string argumentsOf(IInspectable* event) {
    HSTRING text = nullptr;
    query<abi::IToastActivatedEventArgs>(event)->get_Arguments(&text);
    const std::wstring wide = WindowsGetStringRawBuffer(text, nullptr);
    WindowsDeleteString(text);
    return std::string(wide.begin(), wide.end());
}

class NotificationEventsTest : public NotificationStandinTest {
protected:
    // A toast whose events are noted in `events`.
    ComReference<abi::IToastNotification> showListening(const std::wstring& xml = kTwoButtons) {
        auto notification = createNotification(xml);
        ComReference<ActivatedHandler> activated(new ActivatedHandler([this](auto*, IInspectable* event) {
            events.push_back("activated '" + argumentsOf(event) + "'");
            return S_OK;
        }));
        ComReference<DismissedHandler> dismissed(
            new DismissedHandler([this](auto*, abi::IToastDismissedEventArgs* event) {
                abi::DismissalReason reason{};
                event->get_Reason(&reason);
                events.push_back("dismissed " + std::to_string(static_cast<int>(reason)));
                return S_OK;
            }));
        ComReference<FailedHandler> failed(new FailedHandler([this](auto*, abi::IToastFailedEventArgs* event) {
            HRESULT error = S_OK;
            event->get_ErrorCode(&error);
            events.push_back("failed " + std::to_string(error));
            return S_OK;
        }));
        EventRegistrationToken token{};
        notification->add_Activated(activated.get(), &token);
        notification->add_Dismissed(dismissed.get(), &token);
        notification->add_Failed(failed.get(), &token);
        createNotifier()->Show(notification.get());
        return notification;
    }

    // Written on the event thread only, read when it is idle.
    std::vector<std::string> events;
    using Events = std::vector<std::string>;
};

ProcessResult runTool(const std::wstring& arguments) {
    return runProcess(L"\"" + brisk::testing::place(TOAST_CONTROL).native() + L"\" " + arguments);
}

} // namespace

TEST_F(NotificationEventsTest, PressReachesTheHandlerOnTheStandinsThread) {
    auto notification = createNotification();
    DWORD thread = 0;
    abi::IToastNotification* sender = nullptr;
    std::string arguments;
    ComReference<ActivatedHandler> handler(new ActivatedHandler([&](auto* from, IInspectable* event) {
        thread = GetCurrentThreadId();
        sender = from;
        arguments = argumentsOf(event);
        return E_ACCESSDENIED;
    }));
    EventRegistrationToken token{};
    notification->add_Activated(handler.get(), &token);
    createNotifier()->Show(notification.get());
    EXPECT_EQ(control.list(), (Events{"1 screen Title | Yes | No"}));

    const auto result = control.press(1, 1);
    EXPECT_EQ(result.handlers, 1u);
    EXPECT_EQ(result.result, E_ACCESSDENIED);
    EXPECT_EQ(sender, notification.get());
    EXPECT_EQ(arguments, "1");
    EXPECT_NE(thread, GetCurrentThreadId());
    EXPECT_EQ(readRecord(record).back(), "Activated 1 1");
    EXPECT_EQ(control.list(), Events{});
    EXPECT_EQ(errorOf([&] { control.press(1, 1); }), "notification 1 is not shown");
}

TEST_F(NotificationEventsTest, ClickOnTheBodyGivesTheLaunchArgumentsOrNone) {
    auto plain = showListening();
    auto launching = showListening(L"<toast launch=\"open\"><visual/></toast>");
    control.clickBody(1);
    control.clickBody(2);
    EXPECT_EQ(events, (Events{"activated ''", "activated 'open'"}));
}

TEST_F(NotificationEventsTest, DismissedToastStaysInTheCentreAndItsButtonsStillWork) {
    auto first = showListening();
    auto second = showListening();
    control.dismiss(1, 0);
    control.dismiss(1, 2);
    EXPECT_EQ(control.list(), (Events{"1 centre Title | Yes | No", "2 screen Title | Yes | No"}));
    control.press(1, 0);
    control.dismiss(2, 1);
    EXPECT_EQ(control.list(), Events{});
    EXPECT_EQ(events, (Events{"dismissed 0", "dismissed 2", "activated '0'", "dismissed 1"}));
}

TEST_F(NotificationEventsTest, FailureTellsItsErrorCode) {
    auto notification = showListening();
    control.fail(1, E_ACCESSDENIED);
    EXPECT_EQ(events, (Events{"failed " + std::to_string(E_ACCESSDENIED)}));
    EXPECT_EQ(readRecord(record).back(), "Failed 1 0x80070005");
}

TEST_F(NotificationEventsTest, HidingRaisesDismissedByTheApplication) {
    auto notification = createNotification();
    auto notifier = createNotifier();
    EXPECT_EQ(notifier->Hide(notification.get()), kNotificationNotPosted);
    auto shown = showListening();
    EXPECT_EQ(notifier->Hide(shown.get()), S_OK);
    control.waitUntilIdle();
    EXPECT_EQ(events, (Events{"dismissed 1"}));
    EXPECT_EQ(notifier->Hide(shown.get()), kNotificationHidden);
}

TEST_F(NotificationEventsTest, NotificationShownAgainIsTheNewestOnTheScreen) {
    auto first = showListening();
    auto second = showListening();
    control.dismiss(1, 2);
    EXPECT_EQ(createNotifier()->Show(first.get()), S_OK);
    EXPECT_EQ(control.list(), (Events{"2 screen Title | Yes | No", "1 screen Title | Yes | No"}));
    EXPECT_EQ(control.command("press last 0"), "1 0x00000000");
}

TEST_F(NotificationEventsTest, HandlerIsCalledUntilItsTokenIsRemoved) {
    auto notification = createNotification();
    int calls[2] = {};
    EventRegistrationToken tokens[2] = {};
    for (int i : {0, 1}) {
        ComReference<ActivatedHandler> handler(new ActivatedHandler([&calls, i](auto*, auto*) {
            ++calls[i];
            return S_OK;
        }));
        notification->add_Activated(handler.get(), &tokens[i]);
    }
    createNotifier()->Show(notification.get());
    EXPECT_EQ(control.activate(1, "x").handlers, 2u);
    EXPECT_EQ(notification->remove_Activated(tokens[0]), S_OK);
    EXPECT_EQ(notification->remove_Activated(tokens[0]), S_OK);
    EXPECT_EQ(control.activate(1, "x").handlers, 1u);
    EXPECT_EQ(calls[0], 1);
    EXPECT_EQ(calls[1], 2);
}

TEST_F(NotificationEventsTest, ArgumentsThatNoButtonHasArriveAsTheyAre) {
    auto notification = showListening();
    control.activate(1, "12 monkeys");
    control.activate(1, "");
    EXPECT_EQ(events, (Events{"activated '12 monkeys'", "activated ''"}));
    EXPECT_EQ(control.list().size(), 1u);
}

TEST_F(NotificationEventsTest, HandlerThatDoesNotReturnIsReportedWithinTheLimit) {
    auto notification = createNotification();
    std::promise<void> release;
    ComReference<ActivatedHandler> handler(
        new ActivatedHandler([released = release.get_future().share()](auto*, auto*) {
            released.wait();
            return S_OK;
        }));
    EventRegistrationToken token{};
    notification->add_Activated(handler.get(), &token);
    createNotifier()->Show(notification.get());
    EXPECT_EQ(errorOf([&] { control.press(1, 0, 20ms); }), "the handlers did not return within 20 ms");
    EXPECT_EQ(errorOf([&] { control.waitUntilIdle(20ms); }), "events are still being delivered after 20 ms");
    release.set_value();
    control.waitUntilIdle();
}

TEST_F(NotificationEventsTest, WaitsForShowsThatAreStillToCome) {
    EXPECT_EQ(errorOf([&] { control.waitForShows(1, 20ms); }), "0 of 1 toasts were shown within 20 ms");
    auto notification = createNotification();
    auto notifier = createNotifier();
    auto waiting = std::async(std::launch::async, [&] { control.waitForShows(2); });
    notifier->Show(notification.get());
    notifier->Show(notification.get());
    waiting.get();
    EXPECT_EQ(readRecord(record).back(), "Show 1");
}

TEST_F(NotificationEventsTest, AnotherProcessSteersTheServiceThroughThePipe) {
    auto notification = showListening();
    const NotificationStandinControl outside;
    outside.waitForShows(1);
    EXPECT_EQ(outside.list(), (Events{"1 screen Title | Yes | No"}));
    outside.setFailures("Show=0x80070005");
    EXPECT_EQ(createNotifier()->Show(notification.get()), E_ACCESSDENIED);
    const auto result = outside.press(1, 1);
    EXPECT_EQ(result.handlers, 1u);
    EXPECT_EQ(result.result, S_OK);
    EXPECT_EQ(events, (Events{"activated '1'"}));
    EXPECT_EQ(errorOf([] { NotificationStandinControl(L"nobody").list(20ms); }),
              "no process serves notifications at \\\\.\\pipe\\nobody");
}

TEST_F(NotificationEventsTest, ToastControlDoesTheSameOnTheCommandLine) {
    auto notification = showListening();
    const ProcessResult listed = runTool(L"list");
    EXPECT_EQ(listed.output, "1 screen Title | Yes | No\n");
    EXPECT_EQ(listed.exitCode, 0u);
    const ProcessResult missing = runTool(L"press last 2");
    EXPECT_EQ(missing.output, "toast-control: notification 1 has no button 2, it has 2\n");
    EXPECT_EQ(missing.exitCode, 1u);
    const ProcessResult pressed = runTool(L"press 1 0");
    EXPECT_EQ(pressed.output, "1 0x00000000\n");
    EXPECT_EQ(events, (Events{"activated '0'"}));
    const ProcessResult late = runTool(L"--limit 20 wait 2");
    EXPECT_EQ(late.exitCode, 1u);
    const ProcessResult wrong = runTool(L"press 1");
    EXPECT_EQ(wrong.output, "toast-control: press takes 2 arguments; see toast-control --help\n");
    EXPECT_EQ(wrong.exitCode, 2u);
}

TEST_F(NotificationEventsTest, DrawnToastRecordsItsButtonsAndReactsToClicks) {
    SetEnvironmentVariableW(kDrawVariable, L"1");
    auto first = showListening();
    auto second = showListening();
    SetEnvironmentVariableW(kDrawVariable, nullptr);

    const auto click = [&](const std::string& part) {
        std::istringstream line(waitForRecordLine(record, part).substr(part.size()));
        POINT point{};
        line >> point.x >> point.y;
        HWND window = WindowFromPoint(point);
        ScreenToClient(window, &point);
        PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(point.x, point.y));
        PostMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(point.x, point.y));
    };
    click("Button 1 1 ");
    waitForRecordLine(record, "Activated 1 1");
    click("Close 2 ");
    waitForRecordLine(record, "Dismissed 2 0");
    control.waitUntilIdle();
    EXPECT_EQ(events, (Events{"activated '1'", "dismissed 0"}));
    EXPECT_EQ(control.list(), (Events{"2 centre Title | Yes | No"}));
}

} // namespace brisk::standin
