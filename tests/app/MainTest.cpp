// WinMain from its first line to its exit code.
#include "StartUpFixture.h"

#include "BriskHost.h"
#include "base/RunTimeParameters.h"
#include "gfx/CreateGfxInfo.h"
#include "support/JsonErrors.h"
#include "support/ModuleNames.h"
#include "toast/ToastManager.h"
#include "tracking/Gate.h"
#include "tracking/Services.h"

#include <future>

namespace brisk {
namespace {

using testing::bulkPassLines;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using testing::kDisplay;
using testing::Lines;
using testing::operator+;
using testing::parameterLines;
using testing::startLines;

class MainTest : public testing::StartUpFixture {
protected:
    // Notes every call of the fault point by its name.
    template <class Result, class... Arguments>
    void noteCalls(const std::string& name, faults::FaultPoint<Result WINAPI(Arguments...)>& point) {
        point.intercept([this, name, &point](Arguments... arguments) -> Result {
            note("[" + name + "]");
            return point.real(arguments...);
        });
    }

    // One of the functions that toasts need is missing.
    static void hideFunction(const std::string& hidden) {
        GetProcAddressFault.intercept([hidden](HMODULE module, const char* name) -> FARPROC {
            return hidden == name ? nullptr : GetProcAddressFault.real(module, name);
        });
    }
};

TEST_F(MainTest, StartAndQuitLogEveryLineInOrderAndExitWithZero) {
    writeGame();
    EXPECT_EQ(start(), 0);
    EXPECT_THAT(record(), ElementsAreArray(parameterLines() + startLines() + Lines{"Brisk : finished"}));
}

TEST_F(MainTest, StepsOfTheStartFollowTheirOrder) {
    writeGame();
    noteCalls("FindWindow", FindWindowAFault);
    noteCalls("RegCreateKeyEx", RegCreateKeyExAFault);
    noteCalls("RegisterClass", RegisterClassAFault);
    noteCalls("CreateEvent", CreateEventAFault);
    noteCalls("PostQuitMessage", PostQuitMessageFault);
    GetModuleFileNameAFault.intercept([this](HMODULE module, char* buffer, DWORD size) {
        EXPECT_EQ(module, nullptr);
        EXPECT_EQ(size, 260u);
        note("[GetModuleFileName]");
        return testing::giveNameAsWindows(folder.narrow() + "/brisk.exe", buffer, size);
    });
    GetProcAddressFault.intercept([this](HMODULE module, const char* name) {
        if (std::string(name) == "RoGetActivationFactory" && record().back() != "[toast manager]") {
            note("[toast manager]");
        }
        return GetProcAddressFault.real(module, name);
    });
    EXPECT_EQ(start(), 0);
    const Lines lines = startLines();
    EXPECT_THAT(recordAfterParameters(),
                ElementsAre(lines[0], "[FindWindow]", "[GetModuleFileName]", lines[1], "[RegCreateKeyEx]", lines[2],
                            lines[3], lines[4], lines[5], lines[6], lines[7], "[toast manager]", "[RegisterClass]",
                            "[CreateEvent]", "[PostQuitMessage]", "Brisk : finished"));
}

TEST_F(MainTest, ParametersAreReadAndTheLogGoesToItsFileFromTheStartLineOn) {
    writeGame();
    const std::string file = toNarrow(folder / "brisk.log");
    EXPECT_EQ(start("-nw 7 -fps 50 -log " + file), 0);
    EXPECT_EQ(NumberOfIntervalsForWarming, 7u);
    EXPECT_EQ(fpsOverride, 50);
    EXPECT_THAT(testing::splitLines(testing::readFile(folder / "brisk.log")),
                ElementsAreArray(startLines() + Lines{"Brisk : finished"}));
    EXPECT_THAT(record(), ElementsAreArray(parameterLines({{"-nw", "7"}, {"-fps", "50"}, {"-log", file}})));
}

TEST_F(MainTest, EmptyLogPathLeavesTheLogToTheDebugger) {
    writeGame();
    EXPECT_EQ(start("-log "), 0);
    EXPECT_THAT(record(), ElementsAreArray(parameterLines({{"-log", ""}}) + startLines() + Lines{"Brisk : finished"}));
}

TEST_F(MainTest, LogThatCannotBeWrittenIsLostAndTheServiceDoesItsWork) {
    writeGame();
    whenCreated = [](HWND window) { PostMessageA(window, BRISK_MASSIVE_PATCHING, 0, 0); };
    EXPECT_EQ(start("-log " + folder.narrow()), 0);
    EXPECT_THAT(record(), ElementsAreArray(parameterLines({{"-log", folder.narrow()}})));
    EXPECT_EQ(testing::readFile(settings()), "Width=1280\r\n");
}

TEST_F(MainTest, NumberBeyond32BitsEndsTheProcessWithOneBeforeTheStartLine) {
    EXPECT_EQ(start("-nw 99999999999"), 1);
    EXPECT_THAT(record(), ElementsAreArray(parameterLines({{"-nw", "99999999999"}}, "-nw") +
                                           Lines{"Brisk : stoi argument out of range"}));
    EXPECT_EQ(FindWindowAFault.calls(), 0u);
}

TEST_F(MainTest, FailureOfAStartIsLoggedBeforeAnythingElseIsDone) {
    writeDatabase(R"json([{"config_type": "reg", "title_name": "The Game", "binary_name": "game.exe",
                           "config_locations": ["HKEY_CURRENT_USER/Software"],
                           "config_fields": [{"key": "A", "value": 1}]}])json");
    titleManager().loadTitlesDatabase(folder.narrow());
    ASSERT_TRUE(titleManager().isTitleSupported("", "game.exe", ""));
    testing::Gate gate;
    RegSetValueExAFault.intercept([&gate](auto... arguments) {
        gate.pass();
        return RegSetValueExAFault.real(arguments...);
    });
    // Whoever asks the title manager for anything has to wait.
    const auto patch = std::async(std::launch::async, [] { return titleManager().optimizeTitle("game.exe"); });
    ASSERT_TRUE(gate.waitUntilReached());
    EXPECT_EQ(start("-nw 99999999999"), 1);
    EXPECT_EQ(record().back(), "Brisk : stoi argument out of range");
    gate.open();
    ASSERT_EQ(patch.wait_for(testing::kLimit), std::future_status::ready);
    EXPECT_EQ(record().back(), "Brisk : 'The Game' optimized.");
}

TEST_F(MainTest, SecondInstanceLeavesAtOnceWithOne) {
    writeGame();
    FindWindowAFault.intercept([](const char* windowClass, const char* name) {
        EXPECT_STREQ(windowClass, "BriskClass");
        EXPECT_EQ(name, nullptr);
        return GetDesktopWindow();
    });
    EXPECT_EQ(start(), 1);
    EXPECT_THAT(record(), ElementsAreArray(parameterLines() +
                                           Lines{testing::startedLine(), "Brisk : running already. Exiting."}));
    EXPECT_EQ(GetModuleFileNameAFault.calls(), 0u);
    EXPECT_EQ(RegCreateKeyExAFault.calls(), 0u);
    EXPECT_EQ(EnumDisplaySettingsAFault.calls(), 0u);
    EXPECT_EQ(RegisterClassAFault.calls(), 0u);
}

TEST_F(MainTest, UnknownModulePathIsLoggedAndLeavesNoDatabaseToFind) {
    GetModuleFileNameAFault.fail(0, ERROR_ACCESS_DENIED);
    EXPECT_EQ(start(), 0);
    EXPECT_THAT(recordAfterParameters(),
                ElementsAreArray(startLines({.database = {"Brisk : couldn't get module name. Error 5",
                                                          "Brisk : unable to open title database."}}) +
                                 Lines{"Brisk : finished"}));
    EXPECT_EQ(RegisterClassAFault.calls(), 0u);
}

TEST_F(MainTest, ModulePathWithoutADirectoryIsLogged) {
    GetModuleFileNameAFault.intercept(
        [](HMODULE, char* buffer, DWORD size) { return testing::giveNameAsWindows("brisk.exe", buffer, size); });
    EXPECT_EQ(start(), 0);
    EXPECT_THAT(recordAfterParameters(),
                ElementsAreArray(startLines({.database = {"Brisk : couldn't find delimiter in module name.",
                                                          "Brisk : unable to open title database."}}) +
                                 Lines{"Brisk : finished"}));
}

TEST_F(MainTest, DatabaseThatDoesNotLoadYieldsNoWindowAndExitsWithZero) {
    writeDatabase("[]");
    EXPECT_EQ(start(), 0);
    EXPECT_THAT(recordAfterParameters(), ElementsAreArray(startLines({.database = {}}) + Lines{"Brisk : finished"}));
    EXPECT_EQ(RegisterClassAFault.calls(), 0u);
    EXPECT_EQ(GetMessageAFault.calls(), 0u);
}

TEST_F(MainTest, MalformedDatabaseEndsTheStartWithItsErrorAndOne) {
    writeDatabase("[1, 2");
    EXPECT_EQ(start(), 1);
    EXPECT_THAT(recordAfterParameters(),
                ElementsAre(testing::startedLine(), "Brisk : " + testing::jsonErrorOf("[1, 2")));
    EXPECT_EQ(RegCreateKeyExAFault.calls(), 0u);
}

TEST_F(MainTest, RegistryThatIsNotAccessibleYieldsNoWindowAndExitsWithZero) {
    writeGame();
    RegCreateKeyExAFault.fail(ERROR_ACCESS_DENIED);
    EXPECT_EQ(start(), 0);
    EXPECT_THAT(recordAfterParameters(),
                ElementsAreArray(startLines({.registry = "Brisk : access to the Windows Registry not granted."}) +
                                 Lines{"Brisk : finished"}));
    EXPECT_EQ(RegisterClassAFault.calls(), 0u);
}

TEST_F(MainTest, MissingGraphicsInformationYieldsNoWindowAndExitsWithZero) {
    writeGame();
    EnumDisplaySettingsAFault.fail(FALSE);
    EXPECT_EQ(start(), 0);
    EXPECT_THAT(recordAfterParameters(),
                ElementsAreArray(startLines() + Lines{"Brisk : failed to create GfxInfo.", "Brisk : finished"}));
    EXPECT_EQ(gfxInfo, nullptr);
    EXPECT_EQ(RegisterClassAFault.calls(), 0u);
}

TEST_F(MainTest, GraphicsInformationOfTheSlotIsReplaced) {
    writeGame();
    gfxInfo = createGfxInfo();
    const std::weak_ptr<IGfxInfo> before = gfxInfo;
    EXPECT_EQ(start(), 0);
    EXPECT_TRUE(before.expired());
    ASSERT_NE(gfxInfo, nullptr);
    EXPECT_EQ(gfxInfo->getCurrentFps(), 60u);
}

TEST_F(MainTest, EachMissingToastFunctionEndsTheStartWithOne) {
    writeGame();
    for (const char* hidden :
         {"SetCurrentProcessExplicitAppUserModelID", "PropVariantToString", "RoGetActivationFactory",
          "WindowsCreateStringReference", "WindowsGetStringRawBuffer", "WindowsDeleteString"}) {
        const std::size_t before = record().size() + parameterLines().size();
        hideFunction(hidden);
        EXPECT_EQ(start(), 1);
        const Lines all = record();
        EXPECT_THAT(Lines(all.begin() + static_cast<std::ptrdiff_t>(before), all.end()),
                    ElementsAreArray(startLines() + Lines{"Brisk : ToastManager: Error, system in not supported"}))
            << hidden;
    }
    EXPECT_EQ(RegisterClassAFault.calls(), 0u);
}

HRESULT WINAPI refuseId(PCWSTR) {
    return E_ACCESSDENIED;
}

TEST_F(MainTest, IdentityThatIsRefusedEndsTheStartWithOne) {
    writeGame();
    GetProcAddressFault.intercept([](HMODULE module, const char* name) -> FARPROC {
        return std::string(name) == "SetCurrentProcessExplicitAppUserModelID"
                   ? reinterpret_cast<FARPROC>(reinterpret_cast<void*>(refuseId))
                   : GetProcAddressFault.real(module, name);
    });
    EXPECT_EQ(start(), 1);
    EXPECT_THAT(
        recordAfterParameters(),
        ElementsAreArray(startLines() + Lines{"Brisk : ToastManager: Error, could not initialize the library"}));
    EXPECT_EQ(RegisterClassAFault.calls(), 0u);
}

TEST_F(MainTest, ToastManagerIsMadeAlsoWhenNoWindowWillBe) {
    hideFunction("WindowsDeleteString");
    EXPECT_EQ(start(), 1);
    EXPECT_THAT(recordAfterParameters(),
                ElementsAreArray(startLines({.database = {"Brisk : unable to open title database."}}) +
                                 Lines{"Brisk : ToastManager: Error, system in not supported"}));
}

TEST_F(MainTest, ClassThatCannotBeRegisteredEndsTheStartWithOne) {
    writeGame();
    RegisterClassAFault.fail(0, ERROR_CLASS_ALREADY_EXISTS);
    EXPECT_EQ(start(), 1);
    EXPECT_THAT(recordAfterParameters(), ElementsAreArray(startLines() + Lines{"Brisk : RegisterClass failed"}));
    EXPECT_EQ(CreateWindowExAFault.calls(), 0u);
}

TEST_F(MainTest, WindowThatCannotBeCreatedEndsTheStartWithOne) {
    writeGame();
    CreateWindowExAFault.fail(nullptr, ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_EQ(start(), 1);
    EXPECT_THAT(recordAfterParameters(), ElementsAreArray(startLines() + Lines{"Brisk : CreateWindowEx failed"}));
    EXPECT_EQ(GetMessageAFault.calls(), 0u);
}

TEST_F(MainTest, ErrorOfTheMessageQueueIsTreatedLikeAnyMessage) {
    writeGame();
    std::vector<std::pair<HWND, UINT>> dispatched;
    GetMessageAFault.intercept([](MSG* message, HWND filter, UINT first, UINT last) -> BOOL {
        EXPECT_EQ(filter, nullptr);
        EXPECT_EQ(first, 0u);
        EXPECT_EQ(last, 0u);
        return GetMessageAFault.calls() <= 2 ? -1 : GetMessageAFault.real(message, filter, first, last);
    });
    DispatchMessageAFault.intercept([&dispatched](const MSG* message) {
        dispatched.emplace_back(message->hwnd, message->message);
        return DispatchMessageAFault.real(message);
    });
    EXPECT_EQ(start(), 0);
    ASSERT_GE(dispatched.size(), 3u);
    EXPECT_EQ(dispatched[0], std::pair(HWND{}, 0u));
    EXPECT_EQ(dispatched[1], std::pair(HWND{}, 0u));
    EXPECT_EQ(recordAfterParameters().back(), "Brisk : finished");
}

TEST_F(MainTest, ExceptionOfAHandlerEndsTheServiceWithItsTextAndOne) {
    writeGame("(");
    whenCreated = [](HWND window) {
        PostMessageA(window, BRISK_MASSIVE_PATCHING, 0, 0);
        PostMessageA(window, BRISK_RESET_PROMPT_COUNTERS, 0, 0);
    };
    EXPECT_EQ(start(), 1);
    EXPECT_THAT(recordAfterParameters(),
                ElementsAreArray(startLines() + bulkPassLines(kDisplay) +
                                 Lines{"Brisk : publisher: '', binary name: 'game.exe'.",
                                       "Brisk : checking path '" + toNarrow(settings()) + "'.", "Brisk : config found.",
                                       "Brisk : Mismatched '(' and ')' in regular expression"}));
    EXPECT_EQ(testing::readFile(settings()), "Width=1920\r\n");
}

TEST_F(MainTest, WhatIsNoStandardExceptionIsNotCaught) {
    GetModuleFileNameAFault.intercept([](HMODULE, char*, DWORD) -> DWORD {
        throw 5; // NOLINT(hicpp-exception-baseclass): on purpose
    });
    EXPECT_THROW(start(), int);
    EXPECT_THAT(recordAfterParameters(), ElementsAre(testing::startedLine()));
}

} // namespace
} // namespace brisk
