#include "toast/WinToast.h"

#include "toast/ToastFixture.h"

#include <new>
#include <set>

namespace WinToastLib {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
namespace faults = brisk::faults;

// A handler that does nothing.
class SilentHandler final : public IWinToastHandler {
public:
    void toastActivated(int) override {}
    void toastActivated() override {}
    void toastDismissed(ToastDismissalReason) override {}
    void toastFailed() override {}
    void toastCompleted(std::function<void()>) override {}
};

class WinToastTest : public brisk::testing::ToastFixture {
protected:
    static ToastTemplate makeToast() {
        ToastTemplate toast;
        toast.texts = {L"Title", L"Subtitle", L"Body"};
        toast.actions = {L"Yes"};
        return toast;
    }
    static std::shared_ptr<IWinToastHandler> handler() { return std::make_shared<SilentHandler>(); }

    WinToastError initializeError(WinToast& winToast) {
        auto error = WinToastError::NoError;
        const bool initialized = winToast.initialize(&error);
        EXPECT_EQ(initialized, error == WinToastError::NoError);
        return error;
    }
};

TEST_F(WinToastTest, AppUserModelIdIsTheFourPartsJoinedWithFullStops) {
    EXPECT_EQ(WinToast::configureAUMI(L"Orlan", L"Experience", L"Brisk", L"1.10"), L"Orlan.Experience.Brisk.1.10");
}

TEST_F(WinToastTest, EveryFailureToInitializeHasItsErrorCode) {
    WinToast winToast;
    faults::replaceFunction("WindowsDeleteString", nullptr);
    EXPECT_EQ(initializeError(winToast), WinToastError::SystemNotSupported);
    faults::reset();
    EXPECT_EQ(initializeError(winToast), WinToastError::InvalidParameters);
    winToast.setAppName(L"Toasts");
    EXPECT_EQ(initializeError(winToast), WinToastError::InvalidParameters);
    winToast.setAppName({});
    winToast.setAppUserModelId(L"Test.Toasts");
    EXPECT_EQ(initializeError(winToast), WinToastError::InvalidParameters);
    winToast.setAppName(L"Toasts");
    winToast.setCompanyName(L"Folder");
    SetEnvironmentVariableW(L"APPDATA", nullptr);
    EXPECT_EQ(initializeError(winToast), WinToastError::ShellLinkNotCreated);
    SetEnvironmentVariableW(L"APPDATA", machine.path().c_str());
    faults::replaceFunction("SetCurrentProcessExplicitAppUserModelID",
                            faults::asProcedure(+[](PCWSTR) -> HRESULT { return E_INVALIDARG; }));
    EXPECT_EQ(initializeError(winToast), WinToastError::InvalidAppUserModelId);
    faults::reset();
    EXPECT_EQ(initializeError(winToast), WinToastError::NoError);
}

TEST_F(WinToastTest, InitializingAgainThatFailsEndsShowing) {
    WinToast winToast;
    initialize(winToast);
    faults::replaceFunction("RoGetActivationFactory", nullptr);
    EXPECT_FALSE(winToast.initialize());
    auto error = WinToastError::NoError;
    EXPECT_EQ(winToast.showToast(makeToast(), handler(), &error), -1);
    EXPECT_EQ(error, WinToastError::NotInitialized);
    faults::reset();
    // The lookup that failed left nothing to call: look up anew.
    EXPECT_TRUE(winToast.initialize());
    EXPECT_EQ(winToast.showToast(makeToast(), handler()), 0);
    winToast.clear();
}

TEST_F(WinToastTest, InitializingWithShortcutWritesIt) {
    WinToast winToast;
    initialize(winToast);
    EXPECT_FALSE(std::filesystem::exists(shortcut(machine.path())));
    winToast.setShortcutPolicy(ShortcutPolicy::RequireCreate);
    EXPECT_TRUE(winToast.initialize());
    EXPECT_TRUE(std::filesystem::exists(shortcut(machine.path())));
}

TEST_F(WinToastTest, ToastNeedsInitializationAndAHandler) {
    WinToast winToast;
    auto error = WinToastError::NoError;
    for (const auto& none : {handler(), std::shared_ptr<IWinToastHandler>()}) {
        EXPECT_EQ(winToast.showToast(makeToast(), none, &error), -1);
        EXPECT_EQ(error, WinToastError::NotInitialized);
    }
    initialize(winToast);
    EXPECT_EQ(winToast.showToast(makeToast(), nullptr, &error), -1);
    EXPECT_EQ(error, WinToastError::InvalidHandler);
    EXPECT_EQ(winToast.showToast(makeToast(), nullptr), -1);
    EXPECT_THAT(takeRecord(), IsEmpty());
}

TEST_F(WinToastTest, ShowingAToastCallsTheSystemInThisOrder) {
    WinToast winToast;
    initialize(winToast);
    auto error = WinToastError::InvalidHandler;
    EXPECT_GE(winToast.showToast(makeToast(), handler(), &error), 0);
    EXPECT_EQ(error, WinToastError::NoError);
    EXPECT_THAT(
        takeRecord(),
        ElementsAre("DllGetActivationFactory Windows.UI.Notifications.ToastNotificationManager",
                    "CreateToastNotifierWithId Test.Toasts", "GetTemplateContent 3",
                    "LoadXml \\n<toast template=\"ToastGeneric\" duration=\"long\" scenario=\"Default\"><visual>"
                    "<binding template=\"ToastGeneric\"><image placement=\"appLogoOverride\" hint-crop=\"circle\" "
                    "src=\"\"/><text>Title</text><text>Subtitle</text>\\n<text>Body</text></binding></visual><actions>"
                    "<action content=\"Yes\" arguments=\"0\"/></actions></toast>",
                    "DllGetActivationFactory Windows.UI.Notifications.ToastNotification", "CreateToastNotification 1",
                    "add_Activated 1", "add_Dismissed 1", "add_Failed 1", "Show 1"));
    winToast.clear();
}

TEST_F(WinToastTest, IdentifiersAreUnique) {
    WinToast winToast;
    initialize(winToast);
    std::set<std::int64_t> ids;
    for (int i = 0; i < 5; ++i) {
        ids.insert(winToast.showToast(makeToast(), handler()));
    }
    EXPECT_EQ(ids.size(), 5u);
    EXPECT_FALSE(ids.contains(-1));
    winToast.clear();
}

TEST_F(WinToastTest, EveryRefusedCallMakesTheResultMinusOneAndLeaksNothing) {
    WinToast winToast;
    initialize(winToast);
    ToastTemplate toast = makeToast();
    toast.expiration = 1;
    winToast.showToast(toast, handler());
    winToast.clear();
    const long before = toasts.liveObjects();
    for (const char* call :
         {"Activate.ToastNotificationManager", "CreateToastNotifierWithId", "GetTemplateContent",
          "QueryInterface.IXmlDocumentIO", "LoadXml", "Activate.ToastNotification", "CreateToastNotification",
          "put_ExpirationTime", "add_Activated", "add_Dismissed", "add_Failed", "Show"}) {
        toasts.setFailures(std::string(call) + "=0x80070005");
        EXPECT_EQ(winToast.showToast(toast, handler()), -1) << call;
        toasts.setFailures("");
        winToast.clear();
        EXPECT_EQ(toasts.liveObjects(), before) << call;
    }
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_GE(winToast.showToast(toast, handler()), 0);
    winToast.clear();
}

TEST_F(WinToastTest, StringThatCannotBeMadeIsAFailureToo) {
    WinToast winToast;
    initialize(winToast);
    // Class name, application id, document, class name: the n-th string fails.
    static int left;
    static FARPROC create;
    create = GetProcAddress(GetModuleHandleA("combase.dll"), "WindowsCreateStringReference");
    faults::replaceFunction(
        "WindowsCreateStringReference",
        faults::asProcedure(+[](PCWSTR text, UINT32 length, HSTRING_HEADER* header, HSTRING* string) -> HRESULT {
            using Create = HRESULT(WINAPI*)(PCWSTR, UINT32, HSTRING_HEADER*, HSTRING*);
            return left-- == 0
                       ? E_OUTOFMEMORY
                       : reinterpret_cast<Create>(reinterpret_cast<void*>(create))(text, length, header, string);
        }));
    ASSERT_TRUE(winToast.initialize());
    for (int n = 0; n < 4; ++n) {
        left = n;
        EXPECT_EQ(winToast.showToast(makeToast(), handler()), -1) << n;
    }
    faults::reset();
    ASSERT_TRUE(winToast.initialize());
    EXPECT_GE(winToast.showToast(makeToast(), handler()), 0);
    winToast.clear();
}

TEST_F(WinToastTest, LackOfMemoryIsAFailureAndNoException) {
    WinToast winToast;
    initialize(winToast);
    ToastTemplate toast = makeToast();
    toast.expiration = 1;
    GetSystemTimeAsFileTimeFault.intercept([](LPFILETIME) { throw std::bad_alloc(); });
    EXPECT_EQ(winToast.showToast(toast, handler()), -1);
    faults::reset();
    EXPECT_GE(winToast.showToast(toast, handler()), 0);
    winToast.clear();
    toasts.waitUntilIdle();
    EXPECT_EQ(toasts.liveObjects(), 0);
}

TEST_F(WinToastTest, TextThatIsNoXmlIsRefusedByTheSystem) {
    WinToast winToast;
    initialize(winToast);
    ToastTemplate toast = makeToast();
    toast.texts[0] = L"Sand & Sea";
    EXPECT_EQ(winToast.showToast(toast, handler()), -1);
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(WinToastTest, OddNumberOfLinesShowsNothing) {
    WinToast winToast;
    initialize(winToast);
    ToastTemplate toast = makeToast();
    toast.texts[2] = L"A\nB\nC";
    EXPECT_EQ(winToast.showToast(toast, handler()), -1);
    EXPECT_THAT(log.take(), ElementsAre("Passed wrong number of lines to toast. Must be divisible by two"));
    EXPECT_THAT(takeRecord(), ElementsAre("DllGetActivationFactory Windows.UI.Notifications.ToastNotificationManager",
                                          "CreateToastNotifierWithId Test.Toasts", "GetTemplateContent 3"));
}

TEST_F(WinToastTest, ExpirationIsTheSystemTimePlusMilliseconds) {
    WinToast winToast;
    initialize(winToast);
    GetSystemTimeAsFileTimeFault.intercept([](LPFILETIME time) {
        time->dwHighDateTime = 1;
        time->dwLowDateTime = 5;
    });
    ToastTemplate toast = makeToast();
    toast.expiration = 3;
    winToast.showToast(toast, handler());
    EXPECT_THAT(takeRecord(), Contains("put_ExpirationTime 1 4294997301")); // 2^32 + 5 + 3 * 10,000
    winToast.clear();
}

TEST_F(WinToastTest, ExpirationBeyondAllTimeIsTheLatestThereIs) {
    WinToast winToast;
    initialize(winToast);
    GetSystemTimeAsFileTimeFault.intercept([](LPFILETIME time) { *time = {5'807, 0}; });
    ToastTemplate toast = makeToast();
    toast.expiration = std::numeric_limits<std::int64_t>::max();
    winToast.showToast(toast, handler());
    EXPECT_THAT(takeRecord(), Contains("put_ExpirationTime 1 9223372036854775807"));
    winToast.clear();
}

TEST_F(WinToastTest, ExpirationOfZeroOrLessSetsNone) {
    WinToast winToast;
    initialize(winToast);
    for (const std::int64_t expiration : {0, -1}) {
        ToastTemplate toast = makeToast();
        toast.expiration = expiration;
        winToast.showToast(toast, handler());
    }
    EXPECT_THAT(takeRecord(), ::testing::Not(Contains(::testing::StartsWith("put_ExpirationTime"))));
    winToast.clear();
}

TEST_F(WinToastTest, ClearHidesAndDetachesEveryToastOnce) {
    WinToast winToast;
    initialize(winToast);
    const long before = toasts.liveObjects();
    winToast.showToast(makeToast(), handler());
    winToast.showToast(makeToast(), handler());
    takeRecord();
    winToast.clear();
    toasts.waitUntilIdle();
    EXPECT_THAT(takeRecord(), ElementsAre("DllGetActivationFactory Windows.UI.Notifications.ToastNotificationManager",
                                          "CreateToastNotifierWithId Test.Toasts", "Hide 1", "remove_Activated 1",
                                          "remove_Dismissed 1", "remove_Failed 1", "Hide 2", "remove_Activated 2",
                                          "remove_Dismissed 2", "remove_Failed 2"));
    winToast.clear();
    EXPECT_THAT(takeRecord(), ElementsAre("DllGetActivationFactory Windows.UI.Notifications.ToastNotificationManager",
                                          "CreateToastNotifierWithId Test.Toasts"));
    EXPECT_EQ(toasts.liveObjects(), before);
}

TEST_F(WinToastTest, ClearWithoutANotifierStillDetachesAndForgets) {
    WinToast winToast;
    initialize(winToast);
    winToast.showToast(makeToast(), handler());
    takeRecord();
    toasts.setFailures("CreateToastNotifierWithId=0x80070005");
    winToast.clear();
    toasts.setFailures("");
    winToast.clear();
    EXPECT_THAT(takeRecord(), ElementsAre("DllGetActivationFactory Windows.UI.Notifications.ToastNotificationManager",
                                          "CreateToastNotifierWithId Test.Toasts -> 0x80070005", "remove_Activated 1",
                                          "remove_Dismissed 1", "remove_Failed 1",
                                          "DllGetActivationFactory Windows.UI.Notifications.ToastNotificationManager",
                                          "CreateToastNotifierWithId Test.Toasts"));
}

TEST_F(WinToastTest, ClearBeforeInitializationDoesNothing) {
    WinToast winToast;
    winToast.clear();
    EXPECT_THAT(takeRecord(), IsEmpty());
}

TEST_F(WinToastTest, ToastWhoseShowingWasRefusedStaysInTheTableUntilCleared) {
    WinToast winToast;
    initialize(winToast);
    toasts.setFailures("Show=0x80070005");
    EXPECT_EQ(winToast.showToast(makeToast(), handler()), -1);
    toasts.setFailures("");
    takeRecord();
    winToast.clear();
    EXPECT_THAT(takeRecord(), ElementsAre("DllGetActivationFactory Windows.UI.Notifications.ToastNotificationManager",
                                          "CreateToastNotifierWithId Test.Toasts", "Hide 1 -> 0x803E0108",
                                          "remove_Activated 1", "remove_Dismissed 1", "remove_Failed 1"));
    winToast.clear();
    EXPECT_THAT(takeRecord(), ::testing::Not(Contains("remove_Activated 1")));
}

} // namespace
} // namespace WinToastLib
