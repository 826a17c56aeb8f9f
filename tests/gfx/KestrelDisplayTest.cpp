#include "gfx/KestrelDisplay.h"

#include "gfx/KestrelHelper.h"
#include "gfx/PrintDisplayInfo.h"
#include "support/Sandbox.h"
#include "support/kestrel/KestrelStandinControl.h"

#include <gmock/gmock.h>

namespace brisk {
namespace {

using kestrelstandin::KestrelInThisProcess;
using kestrelstandin::KestrelStandin;
using kestrelstandin::kOneDisplay;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using testing::Lines;
using ::testing::Not;
using ::testing::StartsWith;

constexpr DisplayInfo kNone{};

constexpr char kNoServices[] = "Brisk : failed to get Kestrel system services.";
constexpr char kNoDesktopServices[] = "Brisk : failed to get Kestrel desktop services.";
constexpr char kNoDesktopList[] = "Brisk : failed to get Kestrel desktop list.";
constexpr char kNoDesktop[] = "Brisk : failed to get Kestrel desktop.";
constexpr char kNoTopLeft[] = "Brisk : failed to get Kestrel top left point of a desktop.";
constexpr char kSpanView[] = "Brisk : SPANVIEW mode detected on a desktop.";
constexpr char kNoDisplayList[] = "Brisk : failed to get Kestrel display list.";
constexpr char kSeveralDisplays[] = "Brisk : Kestrel detected more than one display on a desktop.";
constexpr char kNoDisplay[] = "Brisk : Kestrel failed to get primary display.";
constexpr char kDisplayFound[] = "Brisk : Kestrel primary display found.";
constexpr char kNoResolution[] = "Brisk : Kestrel failed to get native resolution of a primary display.";
constexpr char kNoRefreshRate[] = "Brisk : Kestrel failed to get refresh rate of a primary display.";
constexpr char kFetched[] = "Brisk : Kestrel native display features fetched.";

class KestrelDisplayTest : public ::testing::Test {
protected:
    // Reads the mode from a library that behaves as the script says, and checks that every reference came back.
    DisplayInfo read(const std::string& script) {
        kestrel.setScript(script);
        KestrelHelper helper;
        EXPECT_EQ(helper.initialize(), 0u);
        kestrel.takeRecord();
        const DisplayInfo mode = readNativeMode(helper.getSystemServices());
        EXPECT_EQ(KestrelInThisProcess::liveReferences(), 1u) << script;
        record = kestrel.takeRecord();
        EXPECT_THAT(record, Not(Contains(StartsWith("error")))) << script;
        return mode;
    }

    // What is logged when the reading fails as the script says.
    Lines readInVain(const std::string& script) {
        EXPECT_EQ(read(script), kNone) << script;
        return log.take();
    }

    testing::CapturedLog log;
    KestrelStandin kestrel;
    KestrelInThisProcess here;
    Lines record;
};

TEST_F(KestrelDisplayTest, NativeModeOfTheOneDisplayIsRead) {
    EXPECT_EQ(read(kOneDisplay), (DisplayInfo{2560, 1440, 0, 60}));
    EXPECT_THAT(log.take(), ElementsAre(kDisplayFound, kFetched));
}

TEST_F(KestrelDisplayTest, EveryObjectIsReleasedAsSoonAsItIsNoLongerUsed) {
    read("desktop 1920 0\ndisplay 1920 1080 60\n"
         "desktop 0 0\ndisplay 2560 1440 144\n");
    EXPECT_THAT(record,
                ElementsAre("SystemServices.GetDesktopServices -> 0", "DesktopServices.GetDesktops -> 0",
                            "DesktopList.At 0 -> 0", "Desktop.GetTopLeft -> 0", "release Desktop",
                            "DesktopList.At 1 -> 0", "Desktop.GetTopLeft -> 0", "Desktop.GetType -> 0",
                            "Desktop.GetDisplays -> 0", "release Desktop", "release DesktopList",
                            "DisplayList.At 0 -> 0", "Display.GetNativeResolution -> 0", "Display.GetRefreshRate -> 0",
                            "release Display", "release DisplayList", "release DesktopServices"));
}

TEST_F(KestrelDisplayTest, RefreshRateIsRoundedAndHalvesGoAwayFromZero) {
    const auto refreshRate = [this](const std::string& hertz) {
        return read("desktop 0 0\ndisplay 1920 1080 " + hertz).refreshRate;
    };
    EXPECT_EQ(refreshRate("59.94"), 60u);
    EXPECT_EQ(refreshRate("74.5"), 75u);
    EXPECT_EQ(refreshRate("143.5"), 144u);
    EXPECT_EQ(refreshRate("144.5"), 145u);
    EXPECT_EQ(refreshRate("59.49"), 59u);
    EXPECT_EQ(refreshRate("0.4"), 0u);
    EXPECT_EQ(refreshRate("240"), 240u);
}

TEST_F(KestrelDisplayTest, DesktopAtTheOriginIsChosenWhereverItStandsInTheList) {
    EXPECT_EQ(read("desktop 1920 0\ndisplay 1920 1080 60\n"
                   "desktop 0 0\ndisplay 2560 1440 144\n"),
              (DisplayInfo{2560, 1440, 0, 144}));
    EXPECT_EQ(read("desktop 0 -1080\ndisplay 1920 1080 60\n"
                   "desktop -1920 0\ndisplay 1920 1080 60\n"
                   "desktop 0 0\ndisplay 3840 2160 120\n"
                   "desktop 3840 0\ndisplay 1280 1024 75\n"),
              (DisplayInfo{3840, 2160, 0, 120}));
    EXPECT_THAT(log.take(), ElementsAre(kDisplayFound, kFetched, kDisplayFound, kFetched));
}

TEST_F(KestrelDisplayTest, FirstDesktopAtTheOriginIsChosenAndTheWalkStopsThere) {
    EXPECT_EQ(read("desktop 0 0\ndisplay 1920 1080 60\n"
                   "desktop 0 0\ndisplay 2560 1440 144\n"),
              (DisplayInfo{1920, 1080, 0, 60}));
    EXPECT_THAT(record, Not(Contains(StartsWith("DesktopList.At 1"))));
}

TEST_F(KestrelDisplayTest, ListsAreWalkedFromTheirFirstIndexOn) {
    EXPECT_EQ(read("first-index 5\n"
                   "desktop 1920 0\ndisplay 1920 1080 60\n"
                   "desktop 0 0\ndisplay 2560 1440 144\n"),
              (DisplayInfo{2560, 1440, 0, 144}));
    EXPECT_THAT(record, Contains("DesktopList.At 5 -> 0"));
    EXPECT_THAT(record, Contains("DesktopList.At 6 -> 0"));
    EXPECT_THAT(record, Contains("DisplayList.At 5 -> 0"));
}

TEST_F(KestrelDisplayTest, ResultsOneAndTwoAreSuccesses) {
    for (const std::string result : {"1", "2"}) {
        std::string script = kOneDisplay;
        for (const char* call : {"SystemServices.GetDesktopServices", "DesktopServices.GetDesktops", "DesktopList.At",
                                 "Desktop.GetTopLeft", "Desktop.GetType", "Desktop.GetDisplays", "DisplayList.At",
                                 "Display.GetNativeResolution", "Display.GetRefreshRate"}) {
            script += std::string("result ") + call + " " + result + "\n";
        }
        EXPECT_EQ(read(script), (DisplayInfo{2560, 1440, 0, 60}));
        EXPECT_THAT(log.take(), ElementsAre(kDisplayFound, kFetched));
    }
    EXPECT_EQ(read("desktop 0 0 span\ndisplay 1920 1080 60\nresult Desktop.GetType 2\n"), kNone);
    EXPECT_THAT(log.take(), ElementsAre(kSpanView, kNoDisplayList));
}

TEST_F(KestrelDisplayTest, MissingSystemServicesAreLogged) {
    EXPECT_EQ(readNativeMode(nullptr), kNone);
    EXPECT_THAT(log.take(), ElementsAre(kNoServices));
}

TEST_F(KestrelDisplayTest, EveryFailingCallIsLoggedAndGivesAnAllZeroMode) {
    const std::vector<std::pair<std::string, Lines>> failures{
        {"SystemServices.GetDesktopServices", {kNoDesktopServices}},
        {"DesktopServices.GetDesktops", {kNoDesktopList, kNoDisplayList}},
        {"DesktopList.At", {kNoDesktop, kNoDisplayList}},
        {"Desktop.GetTopLeft", {kNoTopLeft, kNoDisplayList}},
        {"Desktop.GetDisplays", {kNoDisplayList}},
        {"DisplayList.At", {kNoDisplay}},
        {"Display.GetNativeResolution", {kDisplayFound, kNoResolution}},
        {"Display.GetRefreshRate", {kDisplayFound, kNoRefreshRate}},
    };
    for (const auto& [call, lines] : failures) {
        for (const char* result : {" 3\n", " 4\n", " 4294967295\n"}) {
            EXPECT_THAT(readInVain(kOneDisplay + ("result " + call + result)), ElementsAreArray(lines))
                << call << result;
            // Nothing is asked after it: what was obtained is released.
            std::erase_if(record, [](const std::string& line) { return line.starts_with("release "); });
            ASSERT_FALSE(record.empty()) << call;
            EXPECT_THAT(record.back(), StartsWith(call)) << result;
        }
    }
}

TEST_F(KestrelDisplayTest, SuccessThatGivesNoObjectCountsAsAFailure) {
    const std::vector<std::pair<std::string, Lines>> failures{
        {"SystemServices.GetDesktopServices", {kNoDesktopServices}},
        {"DesktopServices.GetDesktops", {kNoDesktopList, kNoDisplayList}},
        {"DesktopList.At", {kNoDesktop, kNoDisplayList}},
        {"Desktop.GetDisplays", {kNoDisplayList}},
        {"DisplayList.At", {kNoDisplay}},
    };
    for (const auto& [call, lines] : failures) {
        EXPECT_THAT(readInVain(kOneDisplay + ("result " + call + " 0 empty\n")), ElementsAreArray(lines)) << call;
    }
}

TEST_F(KestrelDisplayTest, DesktopThatFailsIsPassedOver) {
    const std::string desktops = "desktop 1920 0\ndisplay 1920 1080 60\n"
                                 "desktop 0 0\ndisplay 2560 1440 144\n";
    EXPECT_EQ(read(desktops + "result DesktopList.At:1 3\n"), (DisplayInfo{2560, 1440, 0, 144}));
    EXPECT_THAT(log.take(), ElementsAre(kNoDesktop, kDisplayFound, kFetched));
    EXPECT_EQ(read(desktops + "result Desktop.GetTopLeft:1 3\n"), (DisplayInfo{2560, 1440, 0, 144}));
    EXPECT_THAT(log.take(), ElementsAre(kNoTopLeft, kDisplayFound, kFetched));
    EXPECT_THAT(readInVain(desktops + "result DesktopList.At:1 3\nresult Desktop.GetTopLeft 3\n"),
                ElementsAre(kNoDesktop, kNoTopLeft, kNoDisplayList));
}

TEST_F(KestrelDisplayTest, WithoutADesktopAtTheOriginTheDisplayListIsMissing) {
    EXPECT_THAT(readInVain(""), ElementsAre(kNoDisplayList));
    EXPECT_THAT(readInVain("desktop 1920 0\ndisplay 1920 1080 60\n"
                           "desktop 0 1080\ndisplay 2560 1440 144\n"),
                ElementsAre(kNoDisplayList));
}

TEST_F(KestrelDisplayTest, SpannedDesktopIsRefusedWithoutALookAtItsDisplays) {
    EXPECT_THAT(readInVain("desktop 0 0 span\ndisplay 1920 1080 60\n"), ElementsAre(kSpanView, kNoDisplayList));
    EXPECT_THAT(record, Not(Contains(StartsWith("Desktop.GetDisplays"))));
    EXPECT_THAT(readInVain("desktop 0 0 span\ndisplay 1920 1080 60\ndisplay 1920 1080 60\n"
                           "desktop 0 0\ndisplay 1920 1080 60\n"),
                ElementsAre(kSpanView, kNoDisplayList));
}

TEST_F(KestrelDisplayTest, SpannedDesktopElsewhereDoesNotMatter) {
    EXPECT_EQ(read("desktop 2560 0 span\ndisplay 1920 1080 60\ndisplay 1920 1080 60\n"
                   "desktop 0 0\ndisplay 2560 1440 144\n"),
              (DisplayInfo{2560, 1440, 0, 144}));
    EXPECT_THAT(log.take(), ElementsAre(kDisplayFound, kFetched));
}

TEST_F(KestrelDisplayTest, TypeThatCannotBeReadIsTakenForAnOrdinaryOne) {
    EXPECT_EQ(read("desktop 0 0 span\ndisplay 2560 1440 144\nresult Desktop.GetType 3\n"),
              (DisplayInfo{2560, 1440, 0, 144}));
    EXPECT_THAT(log.take(), ElementsAre(kDisplayFound, kFetched));
}

TEST_F(KestrelDisplayTest, ClonedDesktopIsRefused) {
    EXPECT_THAT(readInVain("desktop 0 0 duplicate\ndisplay 2560 1440 144\ndisplay 1920 1080 60\n"),
                ElementsAre(kSeveralDisplays));
    EXPECT_THAT(record, Not(Contains(StartsWith("DisplayList.At"))));
    EXPECT_THAT(readInVain("desktop 0 0\ndisplay 1920 1080 60\ndisplay 1920 1080 60\ndisplay 1920 1080 60\n"),
                ElementsAre(kSeveralDisplays));
}

TEST_F(KestrelDisplayTest, DesktopWithoutADisplayIsRefusedWithTheSameLine) {
    EXPECT_THAT(readInVain("desktop 0 0\n"), ElementsAre(kSeveralDisplays));
}

} // namespace
} // namespace brisk
