#include "gfx/CreateGfxInfo.h"

#include "gfx/PrintDisplayInfo.h"
#include "gfx/ScriptedDisplays.h"
#include "support/Sandbox.h"
#include "support/kestrel/KestrelStandinControl.h"

#include <gmock/gmock.h>

namespace brisk {
namespace {

using kestrelstandin::kestrelFolderWithout;
using kestrelstandin::KestrelInThisProcess;
using kestrelstandin::KestrelStandin;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using testing::Lines;

constexpr DisplayInfo kCurrent{1920, 1080, 32, 75};
constexpr DisplayInfo kNative{2560, 1440, 0, 60};

const Lines kWithoutLibrary{"Brisk : initializing GfxInfoKestrel.", "Brisk : initializing Kestrel.",
                            "Brisk : failed to initialize Kestrel.", "Brisk : initializing GfxInfoGen.",
                            "Brisk : get current display info."};

class CreateGfxInfoTest : public ::testing::Test {
protected:
    testing::CapturedLog log;
    KestrelStandin kestrel;
    ScriptedDisplays displays{{{"\\\\.\\DISPLAY1", true, kCurrent, {{2560, 1440, 32, 60}, kCurrent}}}};
};

TEST_F(CreateGfxInfoTest, WorkingLibraryIsKept) {
    const KestrelInThisProcess here;
    const std::shared_ptr<IGfxInfo> info = createGfxInfo();
    ASSERT_TRUE(info);
    EXPECT_TRUE(info->isInitialized());
    EXPECT_THAT(log.take(),
                ElementsAre("Brisk : initializing GfxInfoKestrel.", "Brisk : initializing Kestrel.",
                            "Brisk : Kestrel initialized.", "Brisk : get Kestrel performance monitoring services.",
                            "Brisk : Kestrel performance monitoring services acquired."));
    EXPECT_EQ(info->getCurrentFps(), 60u);
    EXPECT_EQ(info->getNativeDisplayInfo(), kNative);
    EXPECT_EQ(info->getCurrentDisplayInfo(), kCurrent);
    EXPECT_EQ(info->getOptimalResolution(kNative), (DisplayInfo{1920, 1080, 0, 0}));
    EXPECT_THAT(log.take(),
                ElementsAre("Brisk : Kestrel primary display found.",
                            "Brisk : Kestrel native display features fetched.", "Brisk : get current display info.",
                            "Brisk : get available display info modes.", "Brisk : found 2 display modes.",
                            "Brisk : optimal resolution: 1920x1080"));
}

TEST_F(CreateGfxInfoTest, LibraryIsTerminatedAndUnloadedWithTheLastReference) {
    const KestrelInThisProcess here;
    std::shared_ptr<IGfxInfo> info = createGfxInfo();
    std::shared_ptr<IGfxInfo> other = info;
    info.reset();
    kestrel.takeRecord();
    EXPECT_TRUE(KestrelInThisProcess::isLoaded());
    other.reset();
    EXPECT_THAT(kestrel.takeRecord(), ElementsAre("release PerformanceMonitoringServices", "release SystemServices",
                                                  "KestrelTerminate -> 0, 0 live", "unload, 0 live"));
}

TEST_F(CreateGfxInfoTest, WithoutTheLibraryTheOperatingSystemAnswers) {
    const std::shared_ptr<IGfxInfo> info = createGfxInfo();
    ASSERT_TRUE(info);
    EXPECT_TRUE(info->isInitialized());
    EXPECT_THAT(log.take(), ElementsAreArray(kWithoutLibrary));
    EXPECT_EQ(info->getCurrentFps(), 75u);
    EXPECT_EQ(info->getNativeDisplayInfo(), kCurrent);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : get current display info."));
}

TEST_F(CreateGfxInfoTest, IncompleteLibraryIsUnloadedAndTheOperatingSystemAnswers) {
    const KestrelInThisProcess here(kestrelFolderWithout("KestrelQueryVersion"));
    const std::shared_ptr<IGfxInfo> info = createGfxInfo();
    ASSERT_TRUE(info);
    EXPECT_THAT(log.take(), ElementsAreArray(kWithoutLibrary));
    EXPECT_EQ(info->getCurrentFps(), 75u);
    EXPECT_FALSE(KestrelInThisProcess::isLoaded());
}

TEST_F(CreateGfxInfoTest, WithALibraryThatDoesNotStartTheOperatingSystemAnswers) {
    const KestrelInThisProcess here;
    kestrel.setScript("result KestrelInitialize 3\n");
    const std::shared_ptr<IGfxInfo> info = createGfxInfo();
    ASSERT_TRUE(info);
    EXPECT_THAT(log.take(), ElementsAreArray(kWithoutLibrary));
    EXPECT_EQ(info->getCurrentFps(), 75u);
    EXPECT_FALSE(KestrelInThisProcess::isLoaded());
}

TEST_F(CreateGfxInfoTest, LibraryThatDoesNotMeasureIsTerminatedAtOnce) {
    const KestrelInThisProcess here;
    kestrel.setScript("result SystemServices.GetPerformanceMonitoringServices 3\n");
    const std::shared_ptr<IGfxInfo> info = createGfxInfo();
    ASSERT_TRUE(info);
    EXPECT_THAT(log.take(),
                ElementsAre("Brisk : initializing GfxInfoKestrel.", "Brisk : initializing Kestrel.",
                            "Brisk : Kestrel initialized.", "Brisk : get Kestrel performance monitoring services.",
                            "Brisk : failed to get Kestrel performance monitoring services.",
                            "Brisk : initializing GfxInfoGen.", "Brisk : get current display info."));
    EXPECT_THAT(kestrel.takeRecord(),
                ElementsAre("KestrelQueryFullVersion -> 0", "KestrelQueryVersion -> 0",
                            "KestrelInitialize 0x000100000005001E -> 0",
                            "SystemServices.GetPerformanceMonitoringServices -> 3", "release SystemServices",
                            "KestrelTerminate -> 0, 0 live", "unload, 0 live"));
    EXPECT_EQ(info->getCurrentFps(), 75u);
}

TEST_F(CreateGfxInfoTest, LibraryIsTerminatedOnlyWhenTheOperatingSystemHasBeenAsked) {
    const KestrelInThisProcess here;
    kestrel.setScript("result SystemServices.GetPerformanceMonitoringServices 3\n");
    unsigned asked = 0;
    displays.onDeviceAsked = [&asked] {
        ++asked;
        EXPECT_TRUE(KestrelInThisProcess::isLoaded());
    };
    EXPECT_TRUE(createGfxInfo());
    EXPECT_EQ(asked, 2u); // the one there is and the one behind it
    EXPECT_FALSE(KestrelInThisProcess::isLoaded());
}

TEST_F(CreateGfxInfoTest, WithoutLibraryAndDisplayThereIsNone) {
    displays.devices.clear();
    EXPECT_EQ(createGfxInfo(), nullptr);
    Lines lines = kWithoutLibrary;
    lines.push_back("Brisk : failed to create GfxInfo.");
    EXPECT_THAT(log.take(), ElementsAreArray(lines));
    // A library that starts but measures nothing does not help.
    const KestrelInThisProcess here;
    kestrel.setScript("result SystemServices.GetPerformanceMonitoringServices 3\n");
    EXPECT_EQ(createGfxInfo(), nullptr);
    EXPECT_EQ(log.take().back(), "Brisk : failed to create GfxInfo.");
    EXPECT_FALSE(KestrelInThisProcess::isLoaded());
    // The next call asks anew.
    kestrel.setScript(kestrelstandin::kOneDisplay);
    EXPECT_NE(createGfxInfo(), nullptr);
}

TEST_F(CreateGfxInfoTest, WorkingLibraryNeedsNoDisplayOfTheOperatingSystem) {
    const KestrelInThisProcess here;
    displays.devices.clear();
    const std::shared_ptr<IGfxInfo> info = createGfxInfo();
    ASSERT_TRUE(info);
    EXPECT_EQ(info->getCurrentFps(), 60u);
    EXPECT_EQ(displays.modesAsked(), 0u);
}

} // namespace
} // namespace brisk
