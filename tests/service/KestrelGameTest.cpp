#include "service/GameFixture.h"
#include "support/kestrel/KestrelStandinControl.h"

namespace brisk::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;

using kestrelstandin::KestrelStandin;

const Lines kNativeLines{"Brisk : Kestrel primary display found.", "Brisk : Kestrel native display features fetched."};

Lines kestrelStartLines() {
    return startLines(
        {.graphics = {"Brisk : initializing GfxInfoKestrel.", "Brisk : initializing Kestrel.",
                      "Brisk : Kestrel initialized.", "Brisk : get Kestrel performance monitoring services.",
                      "Brisk : Kestrel performance monitoring services acquired."}});
}

const Lines kStartCalls{"KestrelQueryFullVersion -> 0", "KestrelQueryVersion -> 0",
                        "KestrelInitialize 0x000100000005001E -> 0",
                        "SystemServices.GetPerformanceMonitoringServices -> 0"};

const Lines kNativeCalls{"SystemServices.GetDesktopServices -> 0",
                         "DesktopServices.GetDesktops -> 0",
                         "DesktopList.At 0 -> 0",
                         "Desktop.GetTopLeft -> 0",
                         "Desktop.GetType -> 0",
                         "Desktop.GetDisplays -> 0",
                         "release Desktop",
                         "release DesktopList",
                         "DisplayList.At 0 -> 0",
                         "Display.GetNativeResolution -> 0",
                         "Display.GetRefreshRate -> 0",
                         "release Display",
                         "release DisplayList",
                         "release DesktopServices"};

const Lines kEndCalls{"release PerformanceMonitoringServices", "release SystemServices",
                      "KestrelTerminate -> 0, 0 live", "unload, 0 live"};

// The calls of that many frame rates.
std::vector<std::string> samples(unsigned count) {
    std::vector<std::string> calls;
    while (count-- > 0) {
        calls.insert(calls.end(),
                     {"PerformanceMonitoringServices.GetCurrentFps -> 0", "Fps.GetFps -> 0", "release Fps"});
    }
    return calls;
}

// A machine with the vendor's library.
class KestrelGameTest : public GameFixture {
protected:
    KestrelGameTest() { kestrelstandin::installKestrel(service.folder()); }
};

TEST_F(KestrelGameTest, WholeGameIsMeasuredAndJudgedByTheRoundedRefreshRate) {
    KestrelStandin library("desktop 0 0\ndisplay 1024 768 143.5\nframes 100 14 120 80 60\n");
    start("");
    FakeGame game(program);
    play(game);
    // 14 is no sample that counts: three are too few.
    const Lines tooFew = announcedLines(game) + foundLines(game) + measuredLines({"100", "14", "120", "80"});
    play(game);
    toasts.waitForShows(1);
    toasts.press(1, 0);
    EXPECT_EQ(service.quit(), 0u);
    EXPECT_THAT(service.log(), ElementsAreArray(kestrelStartLines() + tooFew + finishedLines("100", kNativeLines, "3") +
                                                Lines{insufficientLine("3")} + announcedLines(game) + foundLines(game) +
                                                measuredLines("60") + finishedLines("60", kNativeLines) +
                                                judgedLines("0", "0.416667") + // 60 of 144
                                                adjustedLines() + Lines{"Brisk : finished"}));
    EXPECT_THAT(shownToasts(), ElementsAre(offer()));
    EXPECT_EQ(readFile(settings()), kAdjustedSettings);
    // The whole use of the library: started once, stopped when the service ended, every interface released.
    EXPECT_THAT(library.takeRecord(),
                ElementsAreArray(kStartCalls + samples(4) + kNativeCalls + samples(4) + kNativeCalls + kEndCalls));
}

TEST_F(KestrelGameTest, FrameRateThatCannotBeMeasuredIsNoSample) {
    KestrelStandin library("desktop 0 0\ndisplay 1024 768 60\nframes 40\n"
                           "result PerformanceMonitoringServices.GetCurrentFps:2 3\n"
                           "result Fps.GetFps:2 3\n");
    start("");
    FakeGame game(program);
    play(game);
    EXPECT_EQ(service.quit(), 0u);
    EXPECT_THAT(
        service.log(),
        ElementsAreArray(kestrelStartLines() + announcedLines(game) + foundLines(game) +
                         Lines{"Brisk : switch to TRACKING", "Brisk : FPS = 40",
                               "Brisk : failed to get current FPS from Kestrel.", "Brisk : FPS = 0",
                               "Brisk : failed to get FPS data from Kestrel.", "Brisk : FPS = 0",
                               "Brisk : switch to NOT_TRACKING", "Brisk : switch to TRACKING", "Brisk : FPS = 40"} +
                         finishedLines("40", kNativeLines, "2") + Lines{insufficientLine("2"), "Brisk : finished"}));
    EXPECT_THAT(shownToasts(), IsEmpty());
}

TEST_F(KestrelGameTest, DisplayThatIsSpannedStopsTheJudgement) {
    KestrelStandin library("desktop 0 0 span\ndisplay 1024 768 60\nframes 40\n");
    start("");
    FakeGame game(program);
    play(game);
    service.quit();
    const Lines expected = kestrelStartLines() + announcedLines(game) + foundLines(game) + measuredLines("40") +
                           endedLines("p1 = 5, p2 = 0x1f", "40", "4") +
                           Lines{"Brisk : get current display info.",
                                 "Brisk : SPANVIEW mode detected on a desktop.",
                                 "Brisk : failed to get Kestrel display list.",
                                 "Brisk : native resolution: 0x0",
                                 "",
                                 "Brisk : current display resolution is different to native display resolution. Skip.",
                                 "Brisk : finished"};
    Lines log = service.log();
    ASSERT_EQ(log.size(), expected.size());
    // Zero divided by zero; nobody means the sign.
    std::string& ratio = log[log.size() - 3];
    EXPECT_THAT(ratio, MatchesRegex("Brisk : aspect ratio: -?nan.*"));
    ratio.clear();
    EXPECT_THAT(log, ElementsAreArray(expected));
    EXPECT_THAT(shownToasts(), IsEmpty());
}

TEST_F(KestrelGameTest, LibraryThatDoesNotStartLeavesTheOperatingSystemsInformation) {
    KestrelStandin library("result KestrelInitialize 3\n");
    start();
    service.quit();
    EXPECT_THAT(service.log(), ElementsAreArray(startLines() + Lines{"Brisk : finished"}));
}

TEST_F(KestrelGameTest, IncompleteLibraryLeavesTheOperatingSystemsInformation) {
    kestrelstandin::installKestrel(service.folder(), kestrelstandin::kestrelFolderWithout("KestrelTerminate"));
    start();
    service.quit();
    EXPECT_THAT(service.log(), ElementsAreArray(startLines() + Lines{"Brisk : finished"}));
}

} // namespace
} // namespace brisk::testing
