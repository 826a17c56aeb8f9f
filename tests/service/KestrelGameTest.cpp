#include "service/GameFixture.h"
#include "support/kestrel/KestrelStandinControl.h"

namespace brisk::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;

using kestrelstandin::KestrelStandin;

const std::vector<std::string> kNativeLines{"Brisk : Kestrel primary display found.",
                                            "Brisk : Kestrel native display features fetched."};

const std::vector<std::string> kKestrelStartLines{"Brisk 1.09 : started",
                                                  "Brisk : titles DB processed.",
                                                  "Brisk : access to the Windows Registry granted.",
                                                  "Brisk : initializing GfxInfoKestrel.",
                                                  "Brisk : initializing Kestrel.",
                                                  "Brisk : Kestrel initialized.",
                                                  "Brisk : get Kestrel performance monitoring services.",
                                                  "Brisk : Kestrel performance monitoring services acquired."};

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
    Lines firstEnd = finishedLines("100", kNativeLines);
    firstEnd[2] = "Brisk : average fps = 100, intervals = 3";
    EXPECT_THAT(service.log(),
                ElementsAreArray(kKestrelStartLines + tooFew + firstEnd +
                                 Lines{"Brisk : insufficient data collected (3 intervals)."} + announcedLines(game) +
                                 foundLines(game) + measuredLines("60") + finishedLines("60", kNativeLines) +
                                 judgedLines("0", "0.416667") + // 60 of 144
                                 Lines{"Brisk : Toast : Configure Settings", "Brisk : 'Starlit Harbour' optimized.",
                                       "Brisk : patch marker set for StarlitHarbour.exe", "Brisk : finished"}));
    EXPECT_THAT(shownToasts(), ElementsAre(offer()));
    EXPECT_EQ(readFile(settings()), kAdjustedSettings);
    // Stopped when the service ended, every interface released.
    EXPECT_THAT(library.takeRecord(), ::testing::Contains("KestrelTerminate -> 0, 0 live"));
}

TEST_F(KestrelGameTest, DisplayThatIsSpannedStopsTheJudgement) {
    KestrelStandin library("desktop 0 0 span\ndisplay 1024 768 60\nframes 40\n");
    start("");
    FakeGame game(program);
    play(game);
    service.quit();
    Lines end = finishedLines(
        "40", {"Brisk : SPANVIEW mode detected on a desktop.", "Brisk : failed to get Kestrel display list."});
    end.resize(end.size() - 5); // up to the native resolution, which is unknown
    const Lines expected = kKestrelStartLines + announcedLines(game) + foundLines(game) + measuredLines("40") + end +
                           Lines{"Brisk : native resolution: 0x0", "",
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

TEST_F(KestrelGameTest, LibraryWithoutAnEntryPointLeavesTheOperatingSystemsInformation) {
    kestrelstandin::installKestrel(service.folder(), kestrelstandin::kestrelFolderWithout("KestrelTerminate"));
    start();
    service.quit();
    EXPECT_THAT(service.log(), ElementsAreArray(startLines() + Lines{"Brisk : finished"}));
}

} // namespace
} // namespace brisk::testing
