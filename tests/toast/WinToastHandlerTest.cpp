#include "toast/WinToastHandler.h"

#include "toast/ButtonPresses.h"

#include "tracking/Gate.h"

#include <gmock/gmock.h>

#include <future>

namespace brisk {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::kGracePeriod;
using testing::kLimit;
using WinToastLib::ToastDismissalReason;

class WinToastHandlerTest : public ::testing::Test {
protected:
    ToastAction action(const std::string& label) {
        return {label, [this, label] { calls.push_back(label); }};
    }
    std::function<void()> release() {
        return [this] { calls.emplace_back("release"); };
    }

    ~WinToastHandlerTest() override {
        std::destroy_at(&buttonPresses());
        std::construct_at(&buttonPresses());
    }

    std::vector<std::string> calls;
    WinToastHandler handler{{action("first"), action("second")}};
};

TEST_F(WinToastHandlerTest, PressRunsOnlyItsCallbackAndThenTheRelease) {
    handler.toastActivated(1);
    EXPECT_THAT(calls, ElementsAre("second"));
    handler.toastCompleted(release());
    EXPECT_THAT(calls, ElementsAre("second", "release"));
}

TEST_F(WinToastHandlerTest, DismissedToastKeepsItsReleaseUntilAButtonIsPressedLater) {
    handler.toastDismissed(ToastDismissalReason::TimedOut);
    handler.toastCompleted(release());
    EXPECT_THAT(calls, IsEmpty());
    handler.toastActivated(0);
    EXPECT_THAT(calls, ElementsAre("first", "release"));
}

TEST_F(WinToastHandlerTest, BodyDismissalAndFailureRunNothing) {
    handler.toastActivated();
    handler.toastCompleted(release());
    handler.toastDismissed(ToastDismissalReason::UserCanceled);
    handler.toastCompleted(release());
    handler.toastFailed();
    handler.toastCompleted(release());
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(WinToastHandlerTest, IndexThatNoButtonHasIsAnInvalidVectorSubscript) {
    for (const int index : {2, 1000, -1}) {
        try {
            handler.toastActivated(index);
            ADD_FAILURE() << index;
        } catch (const std::out_of_range& error) {
            EXPECT_STREQ(error.what(), "invalid vector subscript");
        }
    }
    EXPECT_THAT(calls, IsEmpty());
    // A button was pressed all the same: the release is not held back.
    handler.toastCompleted(release());
    EXPECT_THAT(calls, ElementsAre("release"));
}

TEST_F(WinToastHandlerTest, ButtonWithoutACallbackIsABadFunctionCall) {
    WinToastHandler empty({{"label", nullptr}});
    EXPECT_THROW(empty.toastActivated(0), std::bad_function_call);
}

TEST_F(WinToastHandlerTest, CallbackThatThrowsLeavesTheReleaseStored) {
    bool fails = true;
    WinToastHandler throwing({{"label", [&fails] {
                                   if (fails) {
                                       throw std::runtime_error("no");
                                   }
                               }}});
    throwing.toastCompleted(release());
    EXPECT_THROW(throwing.toastActivated(0), std::runtime_error);
    EXPECT_THAT(calls, IsEmpty());
    fails = false;
    throwing.toastActivated(0);
    EXPECT_THAT(calls, ElementsAre("release"));
}

TEST_F(WinToastHandlerTest, PressWhileACallbackRunsDoesNotWaitForIt) {
    testing::Gate gate;
    const ToastAction slowAction{"slow", [this, &gate] {
                                     gate.pass();
                                     calls.emplace_back("slow");
                                 }};
    WinToastHandler busy({slowAction, action("quick")});
    const auto slow = std::async(std::launch::async, [&] { busy.toastActivated(0); });
    ASSERT_TRUE(gate.waitUntilReached());
    const auto quick = std::async(std::launch::async, [&] {
        busy.toastActivated(1);
        busy.toastCompleted(release());
    });
    EXPECT_EQ(quick.wait_for(kLimit), std::future_status::ready);
    gate.open();
    ASSERT_EQ(slow.wait_for(kLimit), std::future_status::ready);
    EXPECT_THAT(calls, ElementsAre("quick", "release", "slow"));
}

TEST_F(WinToastHandlerTest, EventWhileACallbackRunsReleasesAtOnce) {
    WinToastHandler* toast = nullptr;
    std::future<void> hidden;
    WinToastHandler busy({{"label", [&] {
                               hidden = std::async(std::launch::async, [&] {
                                   toast->toastDismissed(ToastDismissalReason::ApplicationHidden);
                                   toast->toastCompleted([this] { calls.emplace_back("hidden"); });
                               });
                               EXPECT_EQ(hidden.wait_for(kLimit), std::future_status::ready);
                               calls.emplace_back("label");
                           }}});
    toast = &busy;
    busy.toastDismissed(ToastDismissalReason::UserCanceled);
    busy.toastCompleted(release());
    busy.toastActivated(0);
    ASSERT_EQ(hidden.wait_for(kLimit), std::future_status::ready);
    EXPECT_THAT(calls, ElementsAre("hidden", "label", "release"));
}

TEST_F(WinToastHandlerTest, PressAfterTheEndHasNoEffectWhateverItsNumber) {
    buttonPresses().end();
    handler.toastActivated(0);
    handler.toastActivated(2);
    handler.toastCompleted(release());
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(WinToastHandlerTest, EndWaitsForThePressesThatHaveBegunAndForNoOther) {
    testing::Gate gates[2];
    WinToastHandler busy({{"first", [&] { gates[0].pass(); }},
                          {"second",
                           [&] {
                               gates[1].pass();
                               throw std::runtime_error("no");
                           }},
                          action("third")});
    auto first = std::async(std::launch::async, [&] { busy.toastActivated(0); });
    auto second = std::async(std::launch::async, [&] { busy.toastActivated(1); });
    ASSERT_TRUE(gates[0].waitUntilReached());
    ASSERT_TRUE(gates[1].waitUntilReached());
    const auto end = std::async(std::launch::async, [] { buttonPresses().end(); });
    EXPECT_EQ(end.wait_for(kGracePeriod), std::future_status::timeout);
    const auto third = std::async(std::launch::async, [&] { busy.toastActivated(2); });
    gates[1].open();
    EXPECT_THROW(second.get(), std::runtime_error);
    EXPECT_EQ(end.wait_for(kGracePeriod), std::future_status::timeout);
    gates[0].open();
    first.get();
    EXPECT_EQ(end.wait_for(kLimit), std::future_status::ready);
    EXPECT_EQ(third.wait_for(kLimit), std::future_status::ready);
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(WinToastHandlerTest, HandlerHoldsItsOwnCopyOfTheActions) {
    std::vector<ToastAction> actions{action("kept")};
    WinToastHandler copy(actions);
    actions.clear();
    copy.toastActivated(0);
    EXPECT_THAT(calls, ElementsAre("kept"));
}

} // namespace
} // namespace brisk
