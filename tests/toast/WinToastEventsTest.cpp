#include "toast/WinToast.h"

#include "toast/ToastFixture.h"

#include <new>
#include <thread>

namespace WinToastLib {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;
namespace faults = brisk::faults;

// Writes down what it receives, and on which thread.
class RecordingHandler final : public IWinToastHandler {
public:
    void toastActivated(int actionIndex) override {
        events.push_back("button " + std::to_string(actionIndex));
        lastThread = std::this_thread::get_id();
        if (throws) {
            throws();
        }
    }
    void toastActivated() override { events.emplace_back("body"); }
    void toastDismissed(ToastDismissalReason reason) override {
        events.push_back("dismissed " + std::to_string(static_cast<int>(reason)));
    }
    void toastFailed() override { events.emplace_back("failed"); }
    void toastCompleted(std::function<void()> action) override {
        events.emplace_back("completed");
        release = std::move(action);
    }

    std::vector<std::string> events;
    std::thread::id lastThread;
    std::function<void()> throws;
    std::function<void()> release;
};

class WinToastEventsTest : public brisk::testing::ToastFixture {
protected:
    WinToastEventsTest() {
        initialize(winToast);
        toast.actions = {L"Yes", L"No"};
    }
    ~WinToastEventsTest() override { winToast.clear(); }

    void show() { ASSERT_GE(winToast.showToast(toast, handler), 0); }

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
    for (const char* arguments : {"7up", "-3", "yes", "12 13"}) {
        toasts.activate(1, arguments);
    }
    EXPECT_THAT(handler->events, ElementsAre("button 7", "completed", "button -3", "completed", "button 0", "completed",
                                             "button 12", "completed"));
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
    faults::getSystemTime.intercept([](LPFILETIME time) { *time = {0, 1}; });
    show();
    faults::getSystemTime.intercept([](LPFILETIME time) { *time = {9'999'999, 1}; });
    toasts.dismiss(1, 0);
    faults::getSystemTime.intercept([](LPFILETIME time) { *time = {10'000'001, 1}; });
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
    handler->throws = [] { throw std::out_of_range("invalid vector subscript"); };
    EXPECT_EQ(toasts.activate(1, "1").result, E_FAIL);
    handler->throws = [] { throw std::bad_alloc(); };
    EXPECT_EQ(toasts.activate(1, "1").result, E_OUTOFMEMORY);
    handler->throws = [] { throw 5; };
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
    // While the second toast is shown, the first one's release begins on another thread and must wait.
    std::thread releasing;
    std::atomic<bool> released = false;
    toast.expiration = 1;
    faults::getSystemTime.intercept([&](LPFILETIME time) {
        *time = {0, 1};
        if (releasing.joinable()) {
            return; // the runtime asks for the time, too
        }
        releasing = std::thread([&] {
            handler->release();
            released = true;
        });
        Sleep(50);
        EXPECT_FALSE(released);
    });
    show();
    releasing.join();
    EXPECT_TRUE(released);
}

} // namespace
} // namespace WinToastLib
