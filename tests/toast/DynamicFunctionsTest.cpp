#include "toast/DynamicFunctions.h"

#include "toast/FaultPoints.h"
#include "toast/WinToast.h"

#include <gmock/gmock.h>

namespace WinToastLib {
namespace {

using ::testing::ElementsAre;
namespace faults = brisk::faults;

class DynamicFunctionsTest : public ::testing::Test {
protected:
    ~DynamicFunctionsTest() override { faults::reset(); }
};

TEST_F(DynamicFunctionsTest, EveryFunctionIsLookedUpInItsSystemLibraryInOrder) {
    std::vector<std::string> calls;
    LoadLibraryExWFault.intercept([&](LPCWSTR name, HANDLE file, DWORD flags) {
        calls.emplace_back(std::wstring_view(name).begin(), std::wstring_view(name).end());
        EXPECT_EQ(flags, DWORD{LOAD_LIBRARY_SEARCH_SYSTEM32});
        return LoadLibraryExWFault.real(name, file, flags);
    });
    GetProcAddressFault.intercept([&](HMODULE module, LPCSTR name) {
        calls.back() += std::string(" ") + name;
        return GetProcAddressFault.real(module, name);
    });
    DynamicFunctions functions;
    EXPECT_TRUE(functions.resolve());
    EXPECT_THAT(calls,
                ElementsAre("SHELL32.DLL SetCurrentProcessExplicitAppUserModelID", "PROPSYS.DLL PropVariantToString",
                            "COMBASE.DLL RoGetActivationFactory", "COMBASE.DLL WindowsCreateStringReference",
                            "COMBASE.DLL WindowsGetStringRawBuffer", "COMBASE.DLL WindowsDeleteString"));
}

TEST_F(DynamicFunctionsTest, SystemIsIncompatibleWithoutAnyOneOfTheFunctions) {
    for (const char* name : {"SetCurrentProcessExplicitAppUserModelID", "PropVariantToString", "RoGetActivationFactory",
                             "WindowsCreateStringReference", "WindowsGetStringRawBuffer", "WindowsDeleteString"}) {
        faults::replaceFunction(name, nullptr);
        EXPECT_FALSE(WinToast::isCompatible()) << name;
    }
    faults::reset();
    EXPECT_TRUE(WinToast::isCompatible());
}

TEST_F(DynamicFunctionsTest, SystemIsIncompatibleWithoutALibrary) {
    LoadLibraryExWFault.fail(nullptr, ERROR_MOD_NOT_FOUND);
    EXPECT_FALSE(WinToast::isCompatible());
}

} // namespace
} // namespace WinToastLib
