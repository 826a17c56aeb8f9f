#include "gfx/Kestrel.h"
#include "support/Sandbox.h"
#include "support/kestrel/KestrelStandinControl.h"

#include <gmock/gmock.h>

#include <memory>

namespace brisk::kestrelstandin {
namespace {

using ::testing::ElementsAre;

struct FreeLibraryDeleter {
    void operator()(HMODULE module) const { FreeLibrary(module); }
};

// Uses the library without the service's own helper.
class KestrelStandinTest : public ::testing::Test {
protected:
    void load() { library.reset(LoadLibraryExW(kLibraryFile, nullptr, LOAD_LIBRARY_SEARCH_DEFAULT_DIRS)); }

    template <class Function>
    Function entryPoint(const char* name) {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library.get(), name)));
    }

    kestrel::Result start() { return entryPoint<kestrel::KestrelInitialize>("KestrelInitialize")(1, &services); }
    kestrel::Result terminate() { return entryPoint<kestrel::KestrelTerminate>("KestrelTerminate")(); }

    KestrelStandin standin;
    KestrelInThisProcess here;
    std::unique_ptr<std::remove_pointer_t<HMODULE>, FreeLibraryDeleter> library;
    kestrel::ISystemServices* services = nullptr;
};

TEST_F(KestrelStandinTest, LineThatIsNotUnderstoodMakesEveryCallFailAndIsRecorded) {
    for (const std::string line : {"monitor 0 0", "desktop 0", "desktop 0 0 tilted", "display 1920 1080 60",
                                   "desktop 0 0\ndisplay 1920 1080", "first-index", "frames sixty", "frames 60*x",
                                   "result Fps.GetFps", "result Fps.GetRate 3", "result Fps.GetFps 3 full"}) {
        standin.setScript(line);
        load();
        EXPECT_EQ(start(), 99u) << line;
        library.reset();
        EXPECT_THAT(standin.takeRecord(), ElementsAre("error not understood: " + line.substr(line.find('\n') + 1),
                                                      "KestrelInitialize 0x0000000000000001 -> 99", "unload, 0 live"));
    }
}

TEST_F(KestrelStandinTest, ScriptThatDoesNotExistMakesEveryCallFailAndIsRecorded) {
    SetEnvironmentVariableW(kScriptVariable, L"C:\\no such file.txt");
    load();
    EXPECT_EQ(start(), 99u);
    EXPECT_THAT(standin.takeRecord(),
                ElementsAre("error cannot read the script", "KestrelInitialize 0x0000000000000001 -> 99"));
}

TEST_F(KestrelStandinTest, WithoutScriptAndRecordItIsOneDisplay) {
    SetEnvironmentVariableW(kScriptVariable, nullptr);
    SetEnvironmentVariableW(kRecordVariable, nullptr);
    load();
    EXPECT_EQ(start(), 0u);
    kestrel::IDesktopServices* desktopServices = nullptr;
    kestrel::IDesktopList* desktops = nullptr;
    services->GetDesktopServices(&desktopServices);
    desktopServices->GetDesktops(&desktops);
    EXPECT_EQ(desktops->Size(), 1u);
    EXPECT_THAT(standin.takeRecord(), ElementsAre());
}

TEST_F(KestrelStandinTest, CommentsAndEmptyLinesCountForNothing) {
    standin.setScript("# two monitors\n\n  # side by side\r\nfirst-index 1\n");
    load();
    EXPECT_EQ(start(), 0u);
}

TEST_F(KestrelStandinTest, ReferencesAreCounted) {
    load();
    start();
    kestrel::IPerformanceMonitoringServices* monitoring = nullptr;
    services->GetPerformanceMonitoringServices(&monitoring);
    EXPECT_EQ(KestrelInThisProcess::liveReferences(), 2u);
    EXPECT_EQ(monitoring->Acquire(), 2);
    EXPECT_EQ(KestrelInThisProcess::liveReferences(), 3u);
    EXPECT_EQ(monitoring->Release(), 1);
    EXPECT_EQ(KestrelInThisProcess::liveReferences(), 2u);
    standin.takeRecord();
    terminate();
    library.reset();
    EXPECT_THAT(standin.takeRecord(), ElementsAre("KestrelTerminate -> 0, 2 live", "unload, 2 live"));
}

TEST_F(KestrelStandinTest, ReleaseTooManyIsRecorded) {
    load();
    start();
    kestrel::IPerformanceMonitoringServices* monitoring = nullptr;
    services->GetPerformanceMonitoringServices(&monitoring);
    standin.takeRecord();
    monitoring->Release();
    EXPECT_EQ(monitoring->Release(), 0);
    EXPECT_THAT(standin.takeRecord(), ElementsAre("release PerformanceMonitoringServices",
                                                  "error PerformanceMonitoringServices released once too often"));
    EXPECT_EQ(KestrelInThisProcess::liveReferences(), 1u);
}

TEST_F(KestrelStandinTest, UseAfterTerminateIsRecorded) {
    load();
    start();
    kestrel::IPerformanceMonitoringServices* monitoring = nullptr;
    services->GetPerformanceMonitoringServices(&monitoring);
    terminate();
    standin.takeRecord();
    kestrel::IFps* fps = nullptr;
    monitoring->GetCurrentFps(&fps);
    monitoring->Release();
    EXPECT_THAT(standin.takeRecord(),
                ElementsAre("PerformanceMonitoringServices.GetCurrentFps -> 0",
                            "error PerformanceMonitoringServices.GetCurrentFps outside of a start and its end",
                            "release PerformanceMonitoringServices",
                            "error PerformanceMonitoringServices released after KestrelTerminate"));
}

TEST_F(KestrelStandinTest, WrongIndexFailsAndIsRecorded) {
    standin.setScript("first-index 2\ndesktop 0 0\n");
    load();
    start();
    kestrel::IDesktopServices* desktopServices = nullptr;
    kestrel::IDesktopList* desktops = nullptr;
    services->GetDesktopServices(&desktopServices);
    desktopServices->GetDesktops(&desktops);
    standin.takeRecord();
    kestrel::IDesktop* desktop = nullptr;
    EXPECT_EQ(desktops->At(1, &desktop), kestrel::kFailure);
    EXPECT_EQ(desktops->At(3, &desktop), kestrel::kFailure);
    EXPECT_EQ(desktop, nullptr);
    EXPECT_THAT(standin.takeRecord(),
                ElementsAre("error DesktopList.At 1: no such index", "error DesktopList.At 3: no such index"));
}

TEST_F(KestrelStandinTest, FailingCallLeavesItsOutputAsItWas) {
    standin.setScript("result KestrelInitialize:1 3\nresult KestrelInitialize:2 0 empty\n");
    load();
    EXPECT_EQ(start(), 3u);
    EXPECT_EQ(services, nullptr);
    EXPECT_EQ(start(), 0u);
    EXPECT_EQ(services, nullptr);
    EXPECT_EQ(start(), 0u);
    EXPECT_NE(services, nullptr);
}

TEST_F(KestrelStandinTest, ThereIsNoVariantWithoutAnUnknownEntryPoint) {
    EXPECT_THROW(kestrelFolderWithout("KestrelReset"), std::invalid_argument);
}

} // namespace
} // namespace brisk::kestrelstandin
