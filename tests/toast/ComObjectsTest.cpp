// The objects that the service hands to the notification system.
#include "toast/FakeNotification.h"
#include "toast/InternalDateTime.h"
#include "toast/ToastEvents.h"
#include "toast/WinToastHandler.h"

#include <gmock/gmock.h>

namespace WinToastLib {
namespace {

constexpr INT64 kTime = 133500000000000000;

// The object is found by each of the interfaces, and by no other.
void expectInterfaces(IUnknown& object, const std::vector<IID>& interfaces) {
    for (const IID& iid : interfaces) {
        brisk::ComReference<IUnknown> found;
        EXPECT_EQ(object.QueryInterface(iid, found.receiveVoid()), S_OK);
        EXPECT_EQ(found.get(), &object);
    }
    void* other = &object;
    EXPECT_EQ(object.QueryInterface(abi::IToastNotifier::kIid, &other), E_NOINTERFACE);
    EXPECT_EQ(other, nullptr);
    EXPECT_EQ(object.QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST(ComObjectsTest, ExpirationTimeIsAReferenceToADateTimeForAnyThread) {
    const brisk::ComReference<InternalDateTime> time(new InternalDateTime(kTime));
    expectInterfaces(*time.get(), {IID_IUnknown,
                                   IID_IAgileObject,
                                   abi::IReferenceDateTime::kIid,
                                   {0xaf86e2e0, 0xb12d, 0x4c6a, {0x9c, 0x5a, 0xd7, 0xaa, 0x65, 0x10, 0x1e, 0x90}}});
    abi::DateTime value{};
    EXPECT_EQ(time->get_Value(&value), S_OK);
    EXPECT_EQ(value.UniversalTime, kTime);
}

TEST(ComObjectsTest, ExpirationTimeTellsNoNameAndNoInterfacesOfItsOwn) {
    const brisk::ComReference<InternalDateTime> time(new InternalDateTime(kTime));
    ULONG count = 1;
    IID iid{};
    IID* iids = &iid;
    EXPECT_EQ(time->GetIids(&count, &iids), S_OK);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(iids, nullptr);
    auto name = reinterpret_cast<HSTRING>(&count);
    EXPECT_EQ(time->GetRuntimeClassName(&name), S_OK);
    EXPECT_EQ(name, nullptr);
    TrustLevel level = FullTrust;
    EXPECT_EQ(time->GetTrustLevel(&level), S_OK);
    EXPECT_EQ(level, BaseTrust);
}

TEST(ComObjectsTest, ExpirationTimeRefusesToWriteToNowhere) {
    const brisk::ComReference<InternalDateTime> time(new InternalDateTime(kTime));
    ULONG count = 1;
    IID* iids = nullptr;
    EXPECT_EQ(time->GetIids(nullptr, &iids), E_POINTER);
    EXPECT_EQ(time->GetIids(&count, nullptr), E_POINTER);
    EXPECT_EQ(time->GetRuntimeClassName(nullptr), E_POINTER);
    EXPECT_EQ(time->GetTrustLevel(nullptr), E_POINTER);
    EXPECT_EQ(time->get_Value(nullptr), E_POINTER);
}

TEST(ComObjectsTest, EventHandlerIsCalledOnAnyThread) {
    brisk::testing::FakeNotification notification;
    ToastEventTokens tokens;
    const auto handler = std::make_shared<brisk::WinToastHandler>(std::vector<brisk::ToastAction>{});
    ASSERT_EQ(attachEvents(DynamicFunctions(), notification, handler, 0, [] {}, tokens), S_OK);
    expectInterfaces(notification.activatedHandler(), {IID_IUnknown, IID_IAgileObject, abi::IActivatedHandler::kIid});
}

} // namespace
} // namespace WinToastLib
