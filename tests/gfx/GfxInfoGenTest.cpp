#include "gfx/GfxInfoGen.h"

#include "gfx/PrintDisplayInfo.h"
#include "gfx/ScriptedDisplays.h"
#include "support/Sandbox.h"

#include <gmock/gmock.h>

namespace brisk {
namespace {

using ::testing::ElementsAre;

constexpr char kInitializing[] = "Brisk : initializing GfxInfoGen.";
constexpr char kGetCurrent[] = "Brisk : get current display info.";
constexpr DisplayInfo kMode{2560, 1440, 32, 144};

class GfxInfoGenTest : public ::testing::Test {
protected:
    testing::CapturedLog log;
};

TEST_F(GfxInfoGenTest, SystemsOwnDisplayIsRead) {
    DEVMODEA mode{};
    mode.dmSize = sizeof mode;
    ASSERT_TRUE(EnumDisplaySettingsA(nullptr, ENUM_CURRENT_SETTINGS, &mode)) << "there is no display at all";
    const DisplayInfo own{mode.dmPelsWidth, mode.dmPelsHeight, mode.dmBitsPerPel, mode.dmDisplayFrequency};
    GfxInfoGen info;
    EXPECT_TRUE(info.isInitialized());
    EXPECT_EQ(info.getCurrentFps(), own.refreshRate);
    EXPECT_EQ(info.getCurrentDisplayInfo(), own);
    EXPECT_EQ(info.getNativeDisplayInfo(), own);
}

TEST_F(GfxInfoGenTest, ConstructionReadsThePrimaryDisplaysModeOnce) {
    const ScriptedDisplays displays({{"\\\\.\\DISPLAY1", true, kMode, {}}});
    GfxInfoGen info;
    EXPECT_TRUE(info.isInitialized());
    EXPECT_EQ(displays.modesAsked(), 1u);
    EXPECT_THAT(log.take(), ElementsAre(kInitializing, kGetCurrent));
}

TEST_F(GfxInfoGenTest, FrameRateIsTheRefreshRateOfTheConstructionOnEveryCall) {
    ScriptedDisplays displays({{"\\\\.\\DISPLAY1", true, kMode, {}}});
    GfxInfoGen info;
    log.take();
    EXPECT_EQ(info.getCurrentFps(), 144u);
    displays.devices[0].current = DisplayInfo{1920, 1080, 32, 60};
    EXPECT_EQ(info.getCurrentFps(), 144u);
    displays.devices.clear();
    EXPECT_EQ(info.getCurrentFps(), 144u);
    EXPECT_TRUE(info.isInitialized());
    EXPECT_THAT(log.take(), ElementsAre());
}

TEST_F(GfxInfoGenTest, NativeModeIsTheCurrentOneAskedAfresh) {
    ScriptedDisplays displays({{"\\\\.\\DISPLAY1", true, kMode, {}}});
    GfxInfoGen info;
    log.take();
    EXPECT_EQ(info.getNativeDisplayInfo(), kMode);
    EXPECT_EQ(info.getCurrentDisplayInfo(), kMode);
    displays.devices[0].current = DisplayInfo{1920, 1080, 32, 60};
    EXPECT_EQ(info.getNativeDisplayInfo(), (DisplayInfo{1920, 1080, 32, 60}));
    EXPECT_EQ(info.getCurrentDisplayInfo(), (DisplayInfo{1920, 1080, 32, 60}));
    EXPECT_THAT(log.take(), ElementsAre(kGetCurrent, kGetCurrent, kGetCurrent, kGetCurrent));
}

TEST_F(GfxInfoGenTest, WithoutAPrimaryDisplayItIsNotInitialized) {
    ScriptedDisplays displays;
    {
        GfxInfoGen info;
        EXPECT_FALSE(info.isInitialized());
        EXPECT_EQ(info.getCurrentFps(), 0u);
        EXPECT_EQ(info.getNativeDisplayInfo(), DisplayInfo{});
    }
    displays.devices = {{"\\\\.\\DISPLAY1", false, kMode, {}}};
    EXPECT_FALSE(GfxInfoGen().isInitialized());
    EXPECT_THAT(log.take(), ElementsAre(kInitializing, kGetCurrent, kGetCurrent, kInitializing, kGetCurrent));
}

TEST_F(GfxInfoGenTest, WithoutACurrentModeItIsNotInitialized) {
    const ScriptedDisplays displays({{"\\\\.\\DISPLAY1", true, std::nullopt, {kMode}}});
    GfxInfoGen info;
    EXPECT_FALSE(info.isInitialized());
    EXPECT_EQ(info.getCurrentFps(), 0u);
}

TEST_F(GfxInfoGenTest, WidthOfTheCurrentModeDecidesWhetherItIsInitialized) {
    ScriptedDisplays displays({{"\\\\.\\DISPLAY1", true, DisplayInfo{0, 1440, 32, 144}, {}}});
    {
        GfxInfoGen info;
        EXPECT_FALSE(info.isInitialized());
        EXPECT_EQ(info.getCurrentFps(), 144u);
    }
    displays.devices[0].current = DisplayInfo{1, 0, 0, 0};
    GfxInfoGen info;
    EXPECT_TRUE(info.isInitialized());
    EXPECT_EQ(info.getCurrentFps(), 0u);
}

} // namespace
} // namespace brisk
