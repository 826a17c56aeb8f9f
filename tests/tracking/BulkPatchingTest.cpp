// Adjusting every installed title in one pass.
#include "tracking/BulkPatching.h"

#include "ServicesFixture.h"

#include "base/WindowsHandles.h"
#include "state/UserState.h"
#include "tracking/GameEnd.h"

namespace brisk {
namespace {

using testing::enabledLuma;
using testing::enabledTano;
using testing::kAdjustmentsTitle;
using testing::kNothingAdjusted;
using testing::kReportSubtitle;
using testing::Lines;
using testing::notOptimalLine;
using testing::operator+;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using testing::plainToast;
using testing::reportToast;
using testing::toastDocument;

// The titles of loadFive that are found.
const testing::Report kThreeReported{
    {"Alder", enabledTano("1280x720")}, {"Birch", enabledLuma("LUMA Sharp")}, {"Cedar", kNothingAdjusted}};

class BulkPatchingTest : public testing::ServicesFixture {
protected:
    // Alder to be adjusted, Birch with LUMA to be adjusted, Cedar as it should be, Dogwood not installed, Elm under its
    // game's directory.
    void loadFive() {
        nlohmann::json birch = textTitle("Birch", "b.exe", "b.ini");
        birch["luma_version"] = 1;
        birch["config_fields"][0]["text"] = "LUMA Sharp";
        nlohmann::json elm = textTitle("Elm", "e.exe", "e.ini");
        elm["config_locations"] = nlohmann::json::array({"%APPDIR%\\e.ini"});
        loadTitles({elm, textTitle("Dogwood", "d.exe", "d.ini"), textTitle("Cedar", "c.exe", "c.ini"), birch,
                    textTitle("Alder", "a.exe", "a.ini")});
        writeWidth("a", "1920");
        writeWidth("b", "1920");
        writeWidth("c", "1280");
        writeWidth("e", "1920");
    }

    void writeWidth(const std::string& name, const std::string& width) const {
        testing::writeFile(folder / (name + ".ini"), "Width=" + width + "\r\n");
    }

    std::string read(const std::string& name) const { return testing::readFile(folder / (name + ".ini")); }

    Lines findingLines(const std::string& name) const {
        return {"Brisk : publisher: '', binary name: '" + name + ".exe'.",
                "Brisk : checking path '" + toNarrow(folder / (name + ".ini")) + "'."};
    }

    Lines foundLines(const std::string& name) const { return findingLines(name) + Lines{"Brisk : config found."}; }

    Lines patchedLines(const std::string& name, const std::string& title) const {
        return foundLines(name) + Lines{notOptimalLine("1920", "1280")} + testing::patchedLines(title, name + ".exe");
    }

    Lines doneLines(const std::string& name) const {
        return foundLines(name) + Lines{"Brisk : " + name + ".exe doesn't need optimization. Skip."};
    }

    Lines missingLines(const std::string& name) const {
        return findingLines(name) +
               Lines{"Brisk : config not found.", "Brisk : config for " + name + ".exe was not found. Skip."};
    }

    static Lines beginLines() {
        return Lines{"Brisk : onMassivePatching", "Brisk : doMassivePatching"} +
               nativeResolutionLines(testing::kDisplay);
    }

    // Lets the file be read but not written while it lives.
    static UniqueHandle protect(const std::filesystem::path& file) {
        return UniqueHandle(
            CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    }
};

TEST_F(BulkPatchingTest, PassVisitsEveryTitleInTheOrderOfExecutableNames) {
    loadFive();
    onMassivePatching();
    EXPECT_THAT(log.take(),
                ElementsAreArray(beginLines() + patchedLines("a", "Alder") + patchedLines("b", "Birch") +
                                 doneLines("c") + missingLines("d") +
                                 Lines{"Brisk : publisher: '', binary name: 'e.exe'.",
                                       "Brisk : checking path '%APPDIR%\\e.ini'.", "Brisk : config not found.",
                                       "Brisk : config for e.exe was not found. Skip."}));
    EXPECT_EQ(read("a"), "Width=1280\r\n");
    EXPECT_EQ(read("b"), "Width=1280\r\n");
    EXPECT_EQ(read("c"), "Width=1280\r\n");
    EXPECT_EQ(read("e"), "Width=1920\r\n");
    EXPECT_EQ(stateValue("PatchedApps", "a.exe"), 1);
    EXPECT_EQ(stateValue("PatchedApps", "b.exe"), 1);
    EXPECT_EQ(stateValue("PatchedApps", "c.exe"), -1);
    EXPECT_THAT(toasts.shown(), ElementsAre(testing::bulkPatchedToast()));
}

TEST_F(BulkPatchingTest, ReportTellsOfEveryTitleThatWasFound) {
    loadFive();
    std::string report;
    EXPECT_EQ(doMassivePatching(report), BulkOutcome::Patched);
    EXPECT_EQ(report, testing::reportText(kThreeReported));
}

TEST_F(BulkPatchingTest, OutcomesAreTheNumbersFromZeroToThree) {
    loadFive();
    std::string report;
    EXPECT_EQ(static_cast<int>(doMassivePatching(report)), 0);
    EXPECT_EQ(static_cast<int>(doMassivePatching(report)), 1);
    gfx->optimal = {};
    EXPECT_EQ(static_cast<int>(doMassivePatching(report)), 2);
    gfx->optimal = {1280, 720, 0, 0};
    writeWidth("a", "1920");
    const UniqueHandle editor = protect(folder / "a.ini");
    EXPECT_EQ(static_cast<int>(doMassivePatching(report)), 3);
}

TEST_F(BulkPatchingTest, ReadMoreShowsTheReportInPlaceOfTheOutcome) {
    loadFive();
    onMassivePatching();
    log.take();
    toasts.control.press(1, 0);
    EXPECT_THAT(log.take(), ElementsAre("Brisk : Toast : Read more"));
    EXPECT_EQ(toasts.shown().at(1), reportToast(kThreeReported));
    EXPECT_THAT(toasts.control.list(), ElementsAre(std::string("2 screen ") + kAdjustmentsTitle));
}

TEST_F(BulkPatchingTest, DismissOnlyClosesTheToast) {
    loadFive();
    onMassivePatching();
    log.take();
    EXPECT_EQ(toasts.control.press(1, 1).result, S_OK);
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_THAT(toasts.events(), ElementsAre("Show 1", "Activated 1 1"));
}

TEST_F(BulkPatchingTest, DismissedOutcomeStillReadsMoreWhateverBecameOfTheTitles) {
    loadFive();
    onMassivePatching();
    toasts.control.dismiss(1, 0);
    writeWidth("a", "1920");
    loadTitles({textTitle("Other", "o.exe", "o.ini")});
    EXPECT_EQ(toasts.control.press(1, 0).result, S_OK);
    EXPECT_EQ(toasts.shown().at(1), reportToast(kThreeReported));
}

TEST_F(BulkPatchingTest, EverythingSetUpAlreadyGivesOutcomeOneAndAFullReport) {
    loadFive();
    writeWidth("a", "1280");
    writeWidth("b", "1280");
    std::string report;
    EXPECT_EQ(doMassivePatching(report), BulkOutcome::NothingToDo);
    EXPECT_EQ(report, testing::reportText(
                          {{"Alder", kNothingAdjusted}, {"Birch", kNothingAdjusted}, {"Cedar", kNothingAdjusted}}));
    onMassivePatching();
    EXPECT_THAT(toasts.shown(), ElementsAre(testing::bulkNothingToDoToast()));
}

TEST_F(BulkPatchingTest, EmptyTitleListGivesOutcomeOneAndAnEmptyReport) {
    onMassivePatching();
    EXPECT_THAT(log.take(), ElementsAreArray(beginLines()));
    EXPECT_THAT(toasts.shown(), ElementsAre(testing::bulkNothingToDoToast()));
    std::string report;
    EXPECT_EQ(doMassivePatching(report), BulkOutcome::NothingToDo);
    EXPECT_EQ(report, "");
}

TEST_F(BulkPatchingTest, MissingOptimalResolutionStopsBeforeAnyTitleIsTouched) {
    loadFive();
    gfx->optimal = {0, 720, 0, 0};
    onMassivePatching();
    EXPECT_THAT(log.take(),
                ElementsAreArray(beginLines() + Lines{"Brisk : couldn't get optimal display resolution. Skip."}));
    EXPECT_EQ(read("b"), "Width=1920\r\n"); // not even one with LUMA
    EXPECT_THAT(toasts.shown(), ElementsAre(testing::noOptimalConfigurationToast()));
}

TEST_F(BulkPatchingTest, MissingOptimalResolutionKeepsThatOfBefore) {
    nlohmann::json title = textTitle("Alder", "a.exe", "a.ini");
    title["config_fields"] = resolutionFields();
    loadTitles({title});
    testing::writeFile(folder / "a.ini", "A=1\r\nB=1\r\nC=1\r\nD=1\r\n");
    onMassivePatching();
    EXPECT_EQ(read("a"), "A=1920\r\nB=1080\r\nC=1280\r\nD=720\r\n");
    gfx->native = {2560, 1440, 32, 60};
    gfx->optimal = {};
    onMassivePatching();
    EXPECT_TRUE(patchTitle("a.exe"));
    EXPECT_EQ(read("a"), "A=2560\r\nB=1440\r\nC=1280\r\nD=720\r\n");
}

TEST_F(BulkPatchingTest, MarkerThatCannotBeSetCountsAsPatched) {
    loadTitles({textTitle("Alder", "a.exe", "a.ini")});
    writeWidth("a", "1920");
    RegSetValueExAFault.fail(ERROR_ACCESS_DENIED);
    std::string report;
    EXPECT_EQ(doMassivePatching(report), BulkOutcome::Patched);
    EXPECT_EQ(report, testing::reportText({{"Alder", enabledTano("1280x720")}}));
    Lines lines = beginLines();
    lines.erase(lines.begin());
    EXPECT_THAT(log.take(), ElementsAreArray(lines + foundLines("a") +
                                             Lines{notOptimalLine("1920", "1280"), "Brisk : 'Alder' optimized.",
                                                   "Brisk : setPatched : RegSetValueEx failed. Error 5.",
                                                   "Brisk : failed to set patch marker for a.exe"}));
    EXPECT_EQ(stateValue("PatchedApps", "a.exe"), -1);
}

TEST_F(BulkPatchingTest, OneFailedTitleGivesTheErrorToastWithAFullReport) {
    loadFive();
    const UniqueHandle editor = protect(folder / "a.ini");
    onMassivePatching();
    EXPECT_THAT(log.take(),
                ElementsAreArray(beginLines() + foundLines("a") +
                                 Lines{notOptimalLine("1920", "1280"), "Brisk : failed to patch a.exe"} +
                                 patchedLines("b", "Birch") + doneLines("c") + missingLines("d") +
                                 Lines{"Brisk : publisher: '', binary name: 'e.exe'.",
                                       "Brisk : checking path '%APPDIR%\\e.ini'.", "Brisk : config not found.",
                                       "Brisk : config for e.exe was not found. Skip."}));
    EXPECT_EQ(stateValue("PatchedApps", "a.exe"), -1);
    EXPECT_EQ(read("b"), "Width=1280\r\n");
    toasts.control.press(1, 0);
    EXPECT_THAT(toasts.shown(),
                ElementsAre(testing::bulkFailedToast(), reportToast({{"Alder", testing::kAdjustmentFailed},
                                                                     {"Birch", enabledLuma("LUMA Sharp")},
                                                                     {"Cedar", kNothingAdjusted}})));
}

TEST_F(BulkPatchingTest, OnlyTheNativeModeIsAskedForAndNotCompared) {
    loadFive();
    gfx->current = {640, 480, 32, 60};
    onMassivePatching();
    EXPECT_THAT(gfx->questions, ElementsAre("native", "optimal"));
    EXPECT_EQ(gfx->reference, (DisplayInfo{1920, 1080, 32, 60}));
    EXPECT_EQ(read("a"), "Width=1280\r\n");
}

TEST_F(BulkPatchingTest, AnswersToOffersAreNeitherAskedNorChanged) {
    loadFive();
    disallowToasts();
    for (int refusal = 0; refusal < 3; ++refusal) {
        incNumberOfToastsShown("a.exe");
    }
    onMassivePatching();
    EXPECT_EQ(read("a"), "Width=1280\r\n");
    EXPECT_EQ(toasts.shown().size(), 1u);
    EXPECT_EQ(stateValue("", "ToastsNotAllowed"), 1);
    EXPECT_EQ(stateValue("ToastsShown", "a.exe"), 3);
}

TEST_F(BulkPatchingTest, TrackingGoesOn) {
    trackingState = TrackingState::Tracking;
    trackingContext = {1, 2, testing::Desktop::kGameHandle, 3, 4, 5, 6, "Studio", "game.exe"};
    loadFive();
    onMassivePatching();
    EXPECT_EQ(trackingState, TrackingState::Tracking);
    EXPECT_EQ(trackingContext.intervalCounter, 5u);
    EXPECT_EQ(trackingContext.executableName, "game.exe");
    EXPECT_THAT(desktop.takeCalls(), IsEmpty());
}

TEST_F(BulkPatchingTest, OutcomeReplacesWhatIsStillShown) {
    showToast("Old", "", "", {});
    Lines before;
    gfx->meanwhile = [&] {
        if (gfx->questions.back() == "native") {
            before = toasts.events();
        }
    };
    onMassivePatching();
    EXPECT_THAT(before, ElementsAre("Show 1", "Hide 1"));
    EXPECT_THAT(toasts.events(), ElementsAre("Show 1", "Hide 1", "Show 2"));
}

TEST_F(BulkPatchingTest, BrokenPatternEndsThePassWithAnException) {
    nlohmann::json broken = textTitle("Birch", "b.exe", "b.ini");
    broken["config_fields"][0]["key"] = "(";
    loadTitles({textTitle("Alder", "a.exe", "a.ini"), broken});
    writeWidth("a", "1920");
    writeWidth("b", "1920");
    EXPECT_THROW(onMassivePatching(), std::runtime_error);
    EXPECT_EQ(read("a"), "Width=1280\r\n");
    EXPECT_THAT(toasts.events(), IsEmpty());
}

TEST_F(BulkPatchingTest, ReportOfManyTitlesIsOneToast) {
    readMore("A\n1\nB\n2\nC\n3\nD\n4\n");
    EXPECT_THAT(toasts.shown(), ElementsAre(reportToast({{"A", "1"}, {"B", "2"}, {"C", "3"}, {"D", "4"}})));
}

TEST_F(BulkPatchingTest, ReportOfOneLineIsAPlainBody) {
    readMore("Alder");
    readMore("");
    EXPECT_THAT(toasts.shown(), ElementsAre(toastDocument(kAdjustmentsTitle, kReportSubtitle, "<text>Alder</text>", {}),
                                            plainToast(kAdjustmentsTitle, kReportSubtitle)));
}

TEST_F(BulkPatchingTest, ReportWithAnUnevenNumberOfLinesCannotBeShown) {
    showToast("Old", "", "", {});
    // As of a title whose name has a line end.
    readMore("Alder\nGold\nEnabled TANO using 1280x720.\n");
    EXPECT_THAT(log.take(), ElementsAre("Brisk : Toast : Read more",
                                        "Passed wrong number of lines to toast. Must be divisible by two",
                                        "Brisk : ToastManager: Can't show notification"));
    EXPECT_THAT(toasts.events(), ElementsAre("Show 1", "Hide 1"));
}

} // namespace
} // namespace brisk
