#include "hostile/HostileFixture.h"

namespace brisk::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

// Takes two to the power of the text's length steps to find out that there is no match.
constexpr char kHopelessPattern[] = "(a+)+$";
constexpr char kHopelessText[] = "Width=1024\r\naaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaab";
constexpr char kGivenUp[] = "Brisk : Complexity of regex match exceeded implementation limits";

class HostilePatternsTest : public HostileFixture {
protected:
    // The game's title with these settings. They are checked and patched in the order of their keys.
    void setFields(const std::string& fields, const std::string& location = "%APPDIR%\\Settings.ini") const {
        setDatabase(R"([{"id": 1001, "config_type": "txt", "title_name": "Starlit Harbour",
            "publisher": "Brackwater Games", "binary_name": "StarlitHarbour.exe",
            "config_locations": [")" +
                    escaped(location) + R"("], "config_fields": [)" + fields + "]}]");
    }

    static std::string hopelessField() {
        return std::string(R"({"key": ")") + kHopelessPattern + R"(", "value": "x"})";
    }
    static std::string widthField() { return R"json({"key": "(Width=)(\\d+)()", "meta": "width"})json"; }

    // A bulk pass over the hopeless text, in which the service ends.
    Lines lastLinesOfABulkPass(const std::string& fields) {
        setFields(fields, toNarrow(settings()));
        writeFile(settings(), kHopelessText);
        startStorm();
        service.post(BRISK_MASSIVE_PATCHING);
        EXPECT_EQ(waitForStormsEnd(), 1u);
        printFigures({});
        Lines lines = log();
        lines.erase(lines.begin(), lines.end() - 2);
        return lines;
    }

    static constexpr char kArguments[] = "-nw 2 -nt 3 -nn 1 -nv 4 -fps 40";
};

TEST_F(HostilePatternsTest, HopelessPatternMetWhenAGameIsJudgedEndsTheServiceWithOneLine) {
    setFields(hopelessField());
    writeFile(settings(), kHopelessText);
    startStorm(kArguments);
    FakeGame game(program);
    play(game);
    EXPECT_EQ(waitForStormsEnd(), 1u);
    printFigures({});
    EXPECT_THAT(log(), ElementsAreArray(
                           announcedLines(game) + foundLines(game) + measuredLines("40") + finishedLines("40") +
                           Lines{"Brisk : FPS ratio to optimal is 0.666667", "Brisk : shouldShowToast", kGivenUp}));
    EXPECT_EQ(readFile(settings()), kHopelessText);
}

TEST_F(HostilePatternsTest, HopelessPatternMetByAButtonFailsTheEventAndTheServiceLivesOn) {
    setFields(widthField() + "," + hopelessField());
    writeFile(settings(), kHopelessText);
    service.startAndWait(kArguments);
    FakeGame game(program);
    play(game);
    toasts.waitForShows(1);
    const std::size_t first = service.log().size();
    beginStorm();
    const auto press = toasts.press(1, 0, std::chrono::minutes(1));
    EXPECT_EQ(press.handlers, 1u);
    EXPECT_EQ(press.result, E_FAIL);
    endStorm(4); // the first press makes the stand-in's thread for events
    EXPECT_THAT(service.logFrom(first), ElementsAre("Brisk : Toast : Configure Settings"));
    EXPECT_EQ(readFile(settings()), kHopelessText);
    // The next game is offered as ever.
    play(game);
    toasts.waitForShows(2);
    EXPECT_EQ(service.quit(), 0u);
    EXPECT_EQ(stateValue("PatchedApps", "StarlitHarbour.exe"), -1);
}

TEST_F(HostilePatternsTest, HopelessPatternMetByABulkPassEndsTheServiceWithOneLine) {
    EXPECT_THAT(lastLinesOfABulkPass(hopelessField()), ElementsAre("Brisk : config found.", kGivenUp));
    EXPECT_EQ(readFile(settings()), kHopelessText);
}

TEST_F(HostilePatternsTest, HopelessPatternMetByTheHostsPatchLeavesTheFileWhole) {
    EXPECT_THAT(lastLinesOfABulkPass(widthField() + "," + hopelessField()),
                ElementsAre("Brisk : game setting '1024' is not optimal '800'.", kGivenUp));
    EXPECT_EQ(readFile(settings()), kHopelessText);
}

TEST_F(HostilePatternsTest, PatternThatEatsMemoryFailsTheEventAndGivesTheMemoryBack) {
    setFields(widthField() + R"json(,{"key": "Z?(?:(a)|(a))*b", "value": "x"})json");
    const std::string text = "Width=1024\r\n" + std::string(20 * kMegabyte, 'a');
    writeFile(settings(), text);
    startStorm(kArguments);
    FakeGame game(program);
    constexpr unsigned kGames = 6;
    for (unsigned i = 1; i <= kGames; ++i) {
        play(game);
        toasts.waitForShows(i);
        EXPECT_EQ(toasts.press(i, 0, std::chrono::minutes(1)).result, E_FAIL);
    }
    // The file's text stays, and Wine's heap keeps up to half of what the search took for the next one.
    const ProcessCounters after = endStorm(200);
    EXPECT_GE(after.peakWorkingSet, 256 * kMegabyte);
    EXPECT_TRUE(readFile(settings()) == text);
    EXPECT_EQ(service.quit(), 0u);
}

} // namespace
} // namespace brisk::testing
