#include "toast/WinToast.h"

#include "toast/FakeNotification.h"
#include "toast/ToastFixture.h"
#include "tracking/Gate.h"

#include <future>
#include <new>
#include <thread>

namespace WinToastLib {
namespace {

using brisk::testing::kGracePeriod;
using brisk::testing::kLimit;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
namespace faults = brisk::faults;

// Writes down what it receives, and on which thread.
class RecordingHandler final : public IWinToastHandler {
public:
    void toastActivated(int actionIndex) override { note("button " + std::to_string(actionIndex)); }
    void toastActivated() override { note("body"); }
    void toastDismissed(ToastDismissalReason reason) override {
        note("dismissed " + std::to_string(static_cast<int>(reason)));
    }
    void toastFailed() override { note("failed"); }
    void toastCompleted(std::function<void()> action) override {
        release = std::move(action);
        note("completed");
    }

    std::vector<std::string> events;
    std::thread::id lastThread;
    // Runs in every event, after it was written down.
    std::function<void()> meanwhile;
    std::function<void()> release;

private:
    void note(const std::string& event) {
        events.push_back(event);
        lastThread = std::this_thread::get_id();
        if (meanwhile) {
            meanwhile();
        }
    }
};

class WinToastEventsTest : public brisk::testing::ToastFixture {
protected:
    WinToastEventsTest() {
        initialize(winToast);
        toast.actions = {L"Yes", L"No"};
    }
    ~WinToastEventsTest() override { winToast.clear(); }

    void show() { ASSERT_GE(winToast.showToast(toast, handler), 0); }

    // The operation begins on another thread in the middle of showing a toast and has to wait until it is shown.
    void expectToWaitForShowing(const std::function<void()>& operation) {
        std::future<void> other;
        std::atomic<bool> begun = false;
        toast.expiration = 1;
        GetSystemTimeAsFileTimeFault.intercept([&](LPFILETIME time) {
            GetSystemTimeAsFileTimeFault.real(time);
            if (begun.exchange(true)) {
                return; // the runtime asks for the time, too
            }
            other = std::async(std::launch::async, operation);
            EXPECT_EQ(other.wait_for(kGracePeriod), std::future_status::timeout);
        });
        show();
        faults::reset();
        ASSERT_TRUE(other.valid());
        ASSERT_EQ(other.wait_for(kLimit), std::future_status::ready);
    }

    WinToast winToast;
    ToastTemplate toast;
    std::shared_ptr<RecordingHandler> handler = std::make_shared<RecordingHandler>();
};

TEST_F(WinToastEventsTest, PressedButtonReachesTheHandlerWithItsIndexOnAnotherThread) {
    show();
    const auto result = toasts.press(1, 1);
    EXPECT_EQ(result.handlers, 1u);
    EXPECT_EQ(result.result, S_OK);
    EXPECT_THAT(handler->events, ElementsAre("button 1", "completed"));
    EXPECT_NE(handler->lastThread, std::this_thread::get_id());
}

TEST_F(WinToastEventsTest, ClickedBodyComesWithoutAnIndex) {
    show();
    toasts.clickBody(1);
    EXPECT_THAT(handler->events, ElementsAre("body", "completed"));
}

TEST_F(WinToastEventsTest, ArgumentsAreADecimalNumberUpToTheFirstNonDigit) {
    show();
    for (const char* arguments : {"7up", "-3", "yes", "12 13", "99999999999"}) {
        toasts.activate(1, arguments);
    }
    EXPECT_THAT(handler->events, ElementsAre("button 7", "completed", "button -3", "completed", "button 0", "completed",
                                             "button 12", "completed", "button 2147483647", "completed"));
}

TEST_F(WinToastEventsTest, ArgumentsThatCannotBeReadCountAsTheBody) {
    show();
    toasts.setFailures("get_Arguments=0x80004005");
    toasts.activate(1, "1");
    toasts.setFailures("QueryInterface.IToastActivatedEventArgs=0x80004002");
    toasts.activate(1, "1");
    EXPECT_THAT(handler->events, ElementsAre("body", "completed", "body", "completed"));
}

TEST_F(WinToastEventsTest, DismissalComesWithItsReason) {
    for (const unsigned reason : {0u, 1u, 2u}) {
        show();
        toasts.dismiss(reason + 1, reason);
    }
    EXPECT_THAT(handler->events,
                ElementsAre("dismissed 0", "completed", "dismissed 1", "completed", "dismissed 2", "completed"));
}

TEST_F(WinToastEventsTest, CancelledToastWhoseTimeIsUpHasTimedOut) {
    toast.expiration = 1000;
    GetSystemTimeAsFileTimeFault.intercept([](LPFILETIME time) { *time = {0, 1}; });
    show();
    GetSystemTimeAsFileTimeFault.intercept([](LPFILETIME time) { *time = {9'999'999, 1}; });
    toasts.dismiss(1, 0);
    GetSystemTimeAsFileTimeFault.intercept([](LPFILETIME time) { *time = {10'000'001, 1}; });
    toasts.dismiss(1, 0);
    toasts.dismiss(1, 1);
    EXPECT_THAT(handler->events,
                ElementsAre("dismissed 0", "completed", "dismissed 2", "completed", "dismissed 1", "completed"));
}

TEST_F(WinToastEventsTest, ReasonThatCannotBeReadCountsAsCancelled) {
    show();
    toasts.setFailures("get_Reason=0x80004005");
    toasts.dismiss(1, 2);
    EXPECT_THAT(handler->events, ElementsAre("dismissed 0", "completed"));
}

TEST_F(WinToastEventsTest, FailureReachesTheHandler) {
    show();
    toasts.fail(1, E_FAIL);
    EXPECT_THAT(handler->events, ElementsAre("failed", "completed"));
}

TEST_F(WinToastEventsTest, ExceptionOfAHandlerBecomesAFailureCodeAndNothingIsCompleted) {
    show();
    handler->meanwhile = [] { throw std::out_of_range("invalid vector subscript"); };
    EXPECT_EQ(toasts.activate(1, "1").result, E_FAIL);
    handler->meanwhile = [] { throw std::bad_alloc(); };
    EXPECT_EQ(toasts.activate(1, "1").result, E_OUTOFMEMORY);
    handler->meanwhile = [] { throw 5; }; // NOLINT(hicpp-exception-baseclass): it may do that, too
    EXPECT_EQ(toasts.activate(1, "1").result, E_FAIL);
    EXPECT_THAT(handler->events, ElementsAre("button 1", "button 1", "button 1"));
}

TEST_F(WinToastEventsTest, ReleaseTakesTheToastOutOfTheTable) {
    show();
    toast.actions = {};
    show();
    toasts.press(1, 0);
    handler->release();
    takeRecord();
    winToast.clear();
    const auto record = takeRecord();
    EXPECT_THAT(record, Contains("Hide 2"));
    EXPECT_THAT(record, Not(Contains("Hide 1")));
    // Once more has no effect.
    handler->release();
}

TEST_F(WinToastEventsTest, ClearedToastTellsItsHandlerThatItWasHiddenAndNothingMore) {
    show();
    winToast.clear();
    toasts.waitUntilIdle();
    EXPECT_THAT(handler->events, ElementsAre("dismissed 1", "completed"));
    EXPECT_THROW(toasts.press(1, 0), std::runtime_error);
    EXPECT_EQ(handler.use_count(), 1);
}

TEST_F(WinToastEventsTest, ReleaseWaitsForAToastThatIsBeingShown) {
    show();
    toasts.press(1, 0);
    expectToWaitForShowing(handler->release);
    takeRecord();
    winToast.clear();
    const auto record = takeRecord();
    EXPECT_THAT(record, Contains("Hide 2"));
    EXPECT_THAT(record, Not(Contains("Hide 1")));
}

TEST_F(WinToastEventsTest, ClearWaitsForAToastThatIsBeingShownAndHidesIt) {
    expectToWaitForShowing([this] { winToast.clear(); });
    EXPECT_THAT(toasts.list(), IsEmpty());
    toasts.waitUntilIdle();
}

TEST_F(WinToastEventsTest, SettingUpWaitsForAToastThatIsBeingShown) {
    expectToWaitForShowing([this] { winToast.setAppName(L"Another Name"); });
    toasts.waitUntilIdle();
}

TEST_F(WinToastEventsTest, InitializingWaitsForAToastThatIsBeingShown) {
    expectToWaitForShowing([this] { EXPECT_TRUE(winToast.initialize()); });
    toasts.waitUntilIdle();
}

TEST_F(WinToastEventsTest, EventThatTakesItsHandlerOffTheToastReachesItsEnd) {
    using brisk::testing::FakeNotification;
    using Event = HRESULT (FakeNotification::*)();
    const std::pair<Event, std::string> events[] = {{&FakeNotification::activate, "body"},
                                                    {&FakeNotification::dismiss, "dismissed 0"},
                                                    {&FakeNotification::fail, "failed"}};
    const DynamicFunctions functions;
    for (const auto& [event, name] : events) {
        FakeNotification notification;
        ToastEventTokens tokens;
        const std::function<void()> release = [] {};
        ASSERT_EQ(attachEvents(functions, notification, handler, 0, release, tokens), S_OK);
        const std::weak_ptr<RecordingHandler> held = handler;
        std::vector<std::string> seen;
        handler->meanwhile = [&] {
            detachEvents(notification, tokens);
            if (const auto alive = held.lock()) {
                seen = alive->events;
            }
        };
        // From now on only the connection holds it.
        handler.reset();
        EXPECT_EQ((notification.*event)(), S_OK) << name;
        EXPECT_FALSE(notification.wasRunningHandlerLost) << name;
        EXPECT_THAT(seen, ElementsAre(name, "completed"));
        EXPECT_TRUE(held.expired()) << name;
        handler = std::make_shared<RecordingHandler>();
    }
}

} // namespace
} // namespace WinToastLib
