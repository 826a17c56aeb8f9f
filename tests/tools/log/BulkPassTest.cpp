// Passes over all games: each title's outcome, and how much of them is kept.
#include "tools/log/StoredLogs.h"
#include "tools/log/Verdicts.h"
#include "tools/log/WhyText.h"

#include <gmock/gmock.h>

#include <sstream>

namespace brisk::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::string textOf(const std::string& log) {
    std::ostringstream out;
    const logbook::Selection all;
    logbook::WhyText text(out, all, nullptr, false);
    logbook::LogReader reader(text);
    reader.feed(log);
    reader.finish();
    return out.str();
}

TEST(BulkPass, ForbiddenAndUnreadableTitlesHaveOutcomesOfTheirOwn) {
    const std::string condition =
        before(from(logOf("condition"), "Brisk : current configuration with key"), "Brisk : titleManager");
    const std::string nothing = "Brisk : c.exe doesn't need optimization. Skip.";
    const std::string forbidden = changed(logOf("bulk-pass"), nothing, condition + nothing);
    EXPECT_EQ(verdictsOf(forbidden).at(0),
              "pass failed StarlitHarbour.exe=patched a.exe=failed b.exe=not-found c.exe=condition");
    EXPECT_THAT(textOf(forbidden), HasSubstr("c.exe: condition\n"));
    EXPECT_THAT(textOf(forbidden), HasSubstr(condition));
    const std::string unloaded = "Brisk : unable to load configuration.\n";
    findIn(logOf("configuration-gone"), unloaded);
    const std::string gone = changed(logOf("bulk-pass"), nothing, unloaded + nothing);
    EXPECT_EQ(verdictsOf(gone).at(0),
              "pass failed StarlitHarbour.exe=patched a.exe=failed b.exe=not-found c.exe=not-loaded");
    EXPECT_THAT(textOf(gone), HasSubstr("unable to load configuration."));
}

TEST(BulkPass, PassAtWhichTheLogIsCutIsCutOff) {
    const std::string log = logOf("bulk-pass");
    for (const char* line : {"Brisk : doMassivePatching", "Brisk : native", "Brisk : publisher"}) {
        EXPECT_EQ(verdictsOf(before(log, line)).at(0), "pass cut-off") << line;
    }
    // Between two titles.
    EXPECT_EQ(verdictsOf(before(log, "Brisk : publisher: '', binary name: 'a.exe'")).at(0),
              "pass cut-off StarlitHarbour.exe=patched");
    // The last title is there, and the log ends.
    EXPECT_THAT(verdictsOf(before(log, "Brisk : Toast")).at(0), ::testing::StartsWith("pass cut-off "));
    EXPECT_THAT(verdictsOf(before(log, "Brisk : finished")).at(0), ::testing::StartsWith("pass failed "));
    EXPECT_THAT(verdictsOf(before(log, "Brisk : Toast") + "Brisk : finished\n").at(0),
                ::testing::StartsWith("pass failed "));
}

TEST(BulkPass, SoManyTitlesAreKeptAndTheOthersCounted) {
    const std::string log = logOf("bulk-pass");
    std::string pass = before(from(log, "Brisk : onMassivePatching"), "Brisk : Toast");
    const std::string title = before(from(pass, "Brisk : publisher: '', binary name: 'b.exe'"),
                                     "Brisk : publisher: '', binary name: 'c.exe'");
    pass = changed(pass, title, repeated(title, 600));
    const std::string text = before(log, "Brisk : onMassivePatching") + repeated(pass, 3) + "Brisk : finished\n";
    std::size_t kept = 0;
    const Told told = toldOf(text);
    for (const logbook::Pass& one : told.ends.at(0).passes) {
        kept += one.titles.size();
        EXPECT_EQ(logbook::countsOf(one), "1 patched, 1 nothing-to-do, 1 failed, 600 not-found");
    }
    EXPECT_EQ(kept, 1000u);
    EXPECT_THAT(textOf(text), HasSubstr("206 more titles are left out here. All of them: 1 patched, "));
}

} // namespace
} // namespace brisk::testing
