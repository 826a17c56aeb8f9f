#include "toast/ShellShortcut.h"

#include "toast/FakeShellLink.h"
#include "toast/ToastFixture.h"

#include <objbase.h>
#include <shlobj.h>

namespace WinToastLib {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
namespace faults = brisk::faults;

class ShellShortcutTest : public brisk::testing::ToastFixture {
protected:
    ShellShortcutTest() {
        functions.resolve();
        winToast.setAppName(L"Toasts");
        winToast.setCompanyName(L"Folder");
        winToast.setAppUserModelId(L"Test.Toasts");
        CoInitializeExFault.intercept([](LPVOID, DWORD) { return S_OK; });
    }

    std::string path() const { return shortcut(machine.path()).string(); }
    void makeFile() const { brisk::testing::writeFile(shortcut(machine.path()), "a link"); }

    DynamicFunctions functions;
    WinToast winToast;
    brisk::testing::FakeShellLinks links;
};

TEST_F(ShellShortcutTest, PathIsInTheStartMenusProgramsFolder) {
    SetEnvironmentVariableW(L"APPDATA", L"C:\\users\\me\\AppData");
    std::wstring result;
    EXPECT_EQ(getShortcutPath(L"Orlan Software\uA789 Meridian Edition", L"Orlan Game Performance Monitoring", result),
              S_OK);
    EXPECT_EQ(result, L"C:\\users\\me\\AppData\\Microsoft\\Windows\\Start Menu\\Programs\\"
                      L"Orlan Software\uA789 Meridian Edition\\Orlan Game Performance Monitoring.lnk");
}

TEST_F(ShellShortcutTest, PathIsAnInvalidArgumentWhenItIsTooLongOrTheVariableIsMissing) {
    std::wstring result;
    SetEnvironmentVariableW(L"APPDATA", L"C:\\a");
    const std::size_t rest = std::wstring(L"C:\\a\\Microsoft\\Windows\\Start Menu\\Programs\\f\\.lnk").size();
    EXPECT_EQ(getShortcutPath(L"f", std::wstring(259 - rest, L'n'), result), S_OK);
    EXPECT_THAT(result, SizeIs(259));
    EXPECT_EQ(getShortcutPath(L"f", std::wstring(260 - rest, L'n'), result), E_INVALIDARG);
    EXPECT_THAT(result, IsEmpty());
    SetEnvironmentVariableW(L"APPDATA", std::wstring(260, L'a').c_str());
    EXPECT_EQ(getShortcutPath(L"f", L"n", result), E_INVALIDARG);
    SetEnvironmentVariableW(L"APPDATA", nullptr);
    EXPECT_EQ(getShortcutPath(L"f", L"n", result), E_INVALIDARG);
}

TEST_F(ShellShortcutTest, NameAndIdAreNeeded) {
    winToast.setAppName({});
    EXPECT_EQ(winToast.createShortcut(), -1);
    winToast.setAppName(L"Toasts");
    winToast.setAppUserModelId({});
    EXPECT_EQ(winToast.createShortcut(), -1);
}

TEST_F(ShellShortcutTest, IncompatibleSystemIsMinusTwo) {
    faults::replaceFunction("PropVariantToString", nullptr);
    EXPECT_EQ(winToast.createShortcut(), -2);
}

TEST_F(ShellShortcutTest, ComIsInitializedOnceForManyThreads) {
    std::vector<DWORD> models;
    CoInitializeExFault.intercept([&](LPVOID reserved, DWORD model) {
        EXPECT_EQ(reserved, nullptr);
        models.push_back(model);
        return S_OK;
    });
    winToast.createShortcut();
    winToast.createShortcut();
    EXPECT_THAT(models, ElementsAre(DWORD{COINIT_MULTITHREADED}));
}

TEST_F(ShellShortcutTest, ComWithAnotherModelIsAcceptedAndAnyOtherFailureIsMinusThree) {
    CoInitializeExFault.fail(RPC_E_CHANGED_MODE);
    EXPECT_EQ(winToast.createShortcut(), 2);
    CoInitializeExFault.fail(E_OUTOFMEMORY);
    EXPECT_EQ(winToast.createShortcut(), -3);
}

TEST_F(ShellShortcutTest, MissingShortcutIsCreatedWithItsFolder) {
    EXPECT_EQ(winToast.createShortcut(), 2);
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    EXPECT_THAT(links.calls, ElementsAre("SetPath " + std::filesystem::path(program).string(), "SetArguments",
                                         "SetWorkingDirectory", "SetValue Test.Toasts", "Commit", "Save " + path()));
    EXPECT_TRUE(std::filesystem::is_directory(shortcut(machine.path()).parent_path()));
    EXPECT_EQ(links.alive, 0);
}

TEST_F(ShellShortcutTest, ShortcutWithTheRightIdIsLeftAsItIs) {
    makeFile();
    links.storedId = L"Test.Toasts";
    EXPECT_EQ(winToast.createShortcut(), 0);
    EXPECT_THAT(links.calls, ElementsAre("Load " + path(), "GetValue"));
    EXPECT_EQ(links.alive, 0);
}

TEST_F(ShellShortcutTest, ShortcutWithAnotherIdIsCorrected) {
    makeFile();
    links.storedId = L"Other";
    EXPECT_EQ(winToast.createShortcut(), 1);
    EXPECT_THAT(links.calls,
                ElementsAre("Load " + path(), "GetValue", "SetValue Test.Toasts", "Commit", "Save " + path()));
    EXPECT_EQ(links.alive, 0);
}

TEST_F(ShellShortcutTest, ShortcutThatCannotBeReadOrCorrectedIsCreatedAnew) {
    makeFile();
    links.storedId = L"Other";
    for (const char* call : {"Load", "GetValue"}) {
        links.failing = call;
        EXPECT_EQ(winToast.createShortcut(), 2) << call;
        EXPECT_EQ(links.alive, 0) << call;
    }
    // An id of 260 characters and more is no text that the comparison can read.
    links.failing.clear();
    links.storedId = std::wstring(300, L'x');
    links.calls.clear();
    EXPECT_GE(winToast.createShortcut(), 1);
    EXPECT_EQ(links.calls.back(), "Save " + path());
}

TEST_F(ShellShortcutTest, CorrectionThatFailsEndsInACreation) {
    makeFile();
    links.storedId = L"Other";
    links.failing = "Commit";
    EXPECT_EQ(winToast.createShortcut(), -4);
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    EXPECT_THAT(links.calls, ElementsAre("Load " + path(), "GetValue", "SetValue Test.Toasts", "Commit",
                                         "SetPath " + std::filesystem::path(program).string(), "SetArguments",
                                         "SetWorkingDirectory", "SetValue Test.Toasts", "Commit"));
    EXPECT_EQ(links.alive, 0);
    EXPECT_EQ(brisk::testing::readFile(path()), "a link");
}

TEST_F(ShellShortcutTest, EveryFailureToCreateIsMinusFour) {
    for (const char* call : {"CoCreateInstance", "IPersistFile", "IPropertyStore", "SetPath", "SetArguments",
                             "SetWorkingDirectory", "SetValue", "Commit", "Save"}) {
        links.failing = call;
        EXPECT_EQ(winToast.createShortcut(), -4) << call;
        EXPECT_EQ(links.alive, 0) << call;
    }
    links.failing.clear();
    SetEnvironmentVariableW(L"APPDATA", nullptr);
    EXPECT_EQ(winToast.createShortcut(), -4);
}

TEST_F(ShellShortcutTest, ExecutableWhosePathIsUnknownOrTooLongIsMinusFour) {
    GetModuleFileNameWFault.fail(0, ERROR_ACCESS_DENIED);
    EXPECT_EQ(winToast.createShortcut(), -4);
    GetModuleFileNameWFault.fail(MAX_PATH, ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(winToast.createShortcut(), -4);
}

TEST_F(ShellShortcutTest, PolicyIgnoreCreatesNothing) {
    winToast.setShortcutPolicy(ShortcutPolicy::Ignore);
    EXPECT_EQ(winToast.createShortcut(), -4);
    EXPECT_THAT(links.calls, IsEmpty());
}

TEST_F(ShellShortcutTest, SystemsOwnShellLinkIsWrittenToDisk) {
    faults::reset();
    EXPECT_EQ(winToast.createShortcut(), 2);
    brisk::ComReference<IShellLinkW> link;
    ASSERT_EQ(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, link.receiveVoid()),
              S_OK);
    brisk::ComReference<IPersistFile> file;
    ASSERT_EQ(link->QueryInterface(IID_IPersistFile, file.receiveVoid()), S_OK);
    ASSERT_EQ(file->Load(shortcut(machine.path()).c_str(), STGM_READ), S_OK);
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    wchar_t text[MAX_PATH] = L"";
    EXPECT_EQ(link->GetPath(text, MAX_PATH, nullptr, 0), S_OK);
    EXPECT_STREQ(text, program);
    link->GetArguments(text, MAX_PATH);
    EXPECT_STREQ(text, L"");
    link->GetWorkingDirectory(text, MAX_PATH);
    EXPECT_STREQ(text, L"");
}

} // namespace
} // namespace WinToastLib
