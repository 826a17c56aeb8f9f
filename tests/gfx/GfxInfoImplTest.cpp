#include "gfx/GfxInfoImpl.h"

#include "gfx/GfxInfoGen.h"
#include "gfx/PrintDisplayInfo.h"
#include "gfx/ScriptedDisplays.h"
#include "support/Faults.h"
#include "support/Sandbox.h"

#include <gmock/gmock.h>

namespace brisk {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char kGetCurrent[] = "Brisk : get current display info.";
constexpr char kGetModes[] = "Brisk : get available display info modes.";
constexpr char kUnable[] = "Brisk : unable to find optimal resolution.";
constexpr DisplayInfo kLarge{2560, 1440, 32, 144};
constexpr DisplayInfo kSmall{1920, 1080, 32, 60};

class GfxInfoImplTest : public ::testing::Test {
protected:
    GfxInfoImplTest() { log.take(); }

    DisplayInfo current() {
        const DisplayInfo mode = info.getCurrentDisplayInfo();
        EXPECT_THAT(log.take(), ElementsAre(kGetCurrent));
        return mode;
    }

    testing::CapturedLog log;
    ScriptedDisplays displays;
    GfxInfoGen info;
};

TEST_F(GfxInfoImplTest, CurrentModeIsThatOfThePrimaryDisplay) {
    displays.devices = {{"\\\\.\\DISPLAY1", false, kSmall, {}}, {"\\\\.\\DISPLAY2", true, kLarge, {}}};
    EXPECT_EQ(current(), kLarge);
}

TEST_F(GfxInfoImplTest, LaterPrimaryDeviceOverwritesAnEarlierOne) {
    displays.devices = {{"\\\\.\\DISPLAY1", true, kSmall, {}}, {"\\\\.\\DISPLAY2", true, kLarge, {}}};
    EXPECT_EQ(current(), kLarge);
}

TEST_F(GfxInfoImplTest, LaterPrimaryDeviceWithoutACurrentModeLeavesTheEarlierOnes) {
    displays.devices = {{"\\\\.\\DISPLAY1", true, kSmall, {}}, {"\\\\.\\DISPLAY2", true, std::nullopt, {}}};
    EXPECT_EQ(current(), kSmall);
}

TEST_F(GfxInfoImplTest, CurrentModeThatCannotBeReadIsAllZero) {
    EXPECT_EQ(current(), DisplayInfo{});
    displays.devices = {{"\\\\.\\DISPLAY1", false, kSmall, {}}};
    EXPECT_EQ(current(), DisplayInfo{});
    displays.devices = {{"\\\\.\\DISPLAY1", true, std::nullopt, {}}};
    EXPECT_EQ(current(), DisplayInfo{});
}

TEST_F(GfxInfoImplTest, ModesAreListedInTheSystemsOrderDuplicatesIncluded) {
    displays.devices = {{"\\\\.\\DISPLAY1", false, {}, {kLarge}},
                        {"\\\\.\\DISPLAY2", true, {}, {kSmall, kLarge, kSmall, {800, 600, 16, 75}}}};
    // The count is decimal whatever the base of the line before.
    processLog.text(std::hex, std::showbase);
    EXPECT_THAT(info.getDisplayModes(), ElementsAre(kSmall, kLarge, kSmall, DisplayInfo{800, 600, 16, 75}));
    EXPECT_THAT(log.take(), ElementsAre(kGetModes, "Brisk : found 4 display modes."));
}

TEST_F(GfxInfoImplTest, ModesAreThoseOfTheFirstPrimaryDevice) {
    displays.devices = {{"\\\\.\\DISPLAY1", true, {}, {kSmall}}, {"\\\\.\\DISPLAY2", true, {}, {kLarge, kSmall}}};
    EXPECT_THAT(info.getDisplayModes(), ElementsAre(kSmall));
    EXPECT_THAT(log.take(), ElementsAre(kGetModes, "Brisk : found 1 display modes."));
}

TEST_F(GfxInfoImplTest, WithoutAPrimaryDeviceOrModesTheListIsEmpty) {
    EXPECT_THAT(info.getDisplayModes(), IsEmpty());
    displays.devices = {{"\\\\.\\DISPLAY1", false, {}, {kLarge}}};
    EXPECT_THAT(info.getDisplayModes(), IsEmpty());
    displays.devices = {{"\\\\.\\DISPLAY1", true, kLarge, {}}};
    EXPECT_THAT(info.getDisplayModes(), IsEmpty());
    EXPECT_THAT(log.take(), ElementsAre(kGetModes, "Brisk : found 0 display modes.", kGetModes,
                                        "Brisk : found 0 display modes.", kGetModes, "Brisk : found 0 display modes."));
}

TEST_F(GfxInfoImplTest, SystemsOwnModesHoldTheCurrentResolution) {
    faults::reset();
    const DisplayInfo now = info.getCurrentDisplayInfo();
    EXPECT_THAT(info.getDisplayModes(), Contains(::testing::AllOf(::testing::Field(&DisplayInfo::width, now.width),
                                                                  ::testing::Field(&DisplayInfo::height, now.height))));
}

TEST_F(GfxInfoImplTest, OptimalResolutionIsChosenFromTheModesAndLogged) {
    displays.devices = {{"\\\\.\\DISPLAY1",
                         true,
                         {},
                         {{2560, 1440, 32, 144}, {1920, 1080, 32, 144}, {1280, 720, 32, 60}, {1600, 1200, 32, 60}}}};
    processLog.text(std::hex, std::showbase);
    EXPECT_EQ(info.getOptimalResolution({2560, 1440, 0, 0}), (DisplayInfo{1920, 1080, 0, 0}));
    EXPECT_THAT(log.take(),
                ElementsAre(kGetModes, "Brisk : found 4 display modes.", "Brisk : optimal resolution: 1920x1080"));
}

TEST_F(GfxInfoImplTest, NativeResolutionAtSeveralFrequenciesAloneGivesNoOptimalOne) {
    displays.devices = {
        {"\\\\.\\DISPLAY1", true, {}, {{2560, 1440, 32, 144}, {2560, 1440, 32, 120}, {2560, 1440, 32, 60}}}};
    EXPECT_EQ(info.getOptimalResolution({2560, 1440, 0, 0}), DisplayInfo{});
    EXPECT_THAT(log.take(), ElementsAre(kGetModes, "Brisk : found 3 display modes.", kUnable));
}

TEST_F(GfxInfoImplTest, EmptyModeListGivesNoOptimalResolution) {
    EXPECT_EQ(info.getOptimalResolution({2560, 1440, 0, 0}), DisplayInfo{});
    EXPECT_THAT(log.take(), ElementsAre(kGetModes, "Brisk : found 0 display modes.", kUnable));
    displays.devices = {{"\\\\.\\DISPLAY1", true, kLarge, {}}};
    EXPECT_EQ(info.getOptimalResolution({2560, 1440, 0, 0}), DisplayInfo{});
    EXPECT_THAT(log.take(), ElementsAre(kGetModes, "Brisk : found 0 display modes.", kUnable));
    displays.devices[0].modes = {kLarge, kSmall};
    EXPECT_EQ(info.getOptimalResolution({2560, 1440, 0, 0}), (DisplayInfo{1920, 1080, 0, 0}));
}

TEST_F(GfxInfoImplTest, ReferenceWithoutAWidthGivesNoOptimalResolution) {
    displays.devices = {{"\\\\.\\DISPLAY1", true, {}, {kLarge, kSmall}}};
    EXPECT_EQ(info.getOptimalResolution({}), DisplayInfo{});
    EXPECT_THAT(log.take(), ElementsAre(kGetModes, "Brisk : found 2 display modes.", kUnable));
}

} // namespace
} // namespace brisk
