// Logs as they reach a supporter: saved by editors and viewers, cut, glued, or written by two services at once.
#include "tools/log/StoredLogs.h"
#include "tools/log/Verdicts.h"

#include <gmock/gmock.h>

namespace brisk::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

class DamagedLogTest : public ::testing::TestWithParam<std::string> {
protected:
    const std::vector<std::string>& expected() const { return expectedVerdicts().at(GetParam()); }
    std::string log() const { return logOf(GetParam()); }
};

TEST_P(DamagedLogTest, BlanksTabsAndCarriageReturnsAtLinesEndsChangeNothing) {
    for (const char* end : {" \n", "\t\n", " \r\n", "\r\r\n", " \t \r\r\n"}) {
        EXPECT_THAT(verdictsOf(joined(log(), end)), ElementsAreArray(expected())) << end;
    }
}

TEST_P(DamagedLogTest, CarriageReturnsAloneEndLines) {
    EXPECT_THAT(verdictsOf(joined(log(), "\r")), ElementsAreArray(expected()));
}

TEST_P(DamagedLogTest, BlanksInPlaceOfLineEndsChangeNothing) {
    EXPECT_THAT(verdictsOf(joined(log(), " ")), ElementsAreArray(expected()));
}

TEST_P(DamagedLogTest, WideTextIsReadWithoutAMark) {
    std::string little;
    std::string big;
    for (const char byte : log()) {
        little += {byte, '\0'};
        big += {'\0', byte};
    }
    EXPECT_THAT(verdictsOf(little), ElementsAreArray(expected()));
    EXPECT_THAT(verdictsOf(big), ElementsAreArray(expected()));
}

TEST_P(DamagedLogTest, ProcessIsFoundInEveryViewersForm) {
    for (const char* front :
         {"[1234:5678] ", "12:34:56 brisk.exe[1234]: ", "12:34:56 [0x4d2] ", "12:34:56 pid=1234 ",
          "04d2:0024: ", "04d2:0024:warn:debugstr:OutputDebugStringA ", "\"1\",\"12:34:56\",\"1234\",\"brisk.exe\",\"",
          "\"1\",\"2026-01-31 12:34:56\",\"1234\",\"brisk.exe\",\"", "2026-01-31 12:34:56 1234 "}) {
        const bool isQuoted = std::string_view(front).ends_with("\"");
        std::string capture;
        for (const std::string& line : splitLines(log())) {
            capture += front + line + (isQuoted ? "\"\n" : "\n");
        }
        EXPECT_THAT(verdictsOf(capture), ElementsAreArray(expected())) << front;
        const Told told = toldOf(capture);
        for (const logbook::Session& session : told.ends) {
            EXPECT_EQ(session.processId, 1234u) << front;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Logs, DamagedLogTest,
                         ::testing::Values("offer-configured", "refused-three-times", "process-not-opened", "condition",
                                           "second-game", "bulk-pass", "fast-enough", "running-already"),
                         [](const ::testing::TestParamInfo<std::string>& name) {
                             std::string word = name.param;
                             std::replace(word.begin(), word.end(), '-', '_');
                             return word;
                         });

TEST(DamagedLog, TimeOfACaptureHasItsDate) {
    const Told told = toldOf("2026-01-31 12:34:56 [7] " + joined(logOf("unknown-id"), "\n"));
    EXPECT_EQ(told.ends.at(0).beginTime, "2026-01-31 12:34:56");
}

TEST(DamagedLog, NumberInFrontOfTheTimeIsTheLinesAndNoProcess) {
    std::string capture;
    std::size_t number = 0;
    for (const std::string& line : splitLines(logOf("offer-configured"))) {
        capture += std::to_string(++number) + "\t10:11:12\t" + line + "\n";
    }
    EXPECT_THAT(verdictsOf(capture), ElementsAreArray(expectedVerdicts().at("offer-configured")));
}

TEST(DamagedLog, LineOfManyMegabytesIsReadToItsEnd) {
    const std::string start = before(logOf("unknown-id"), "\n");
    EXPECT_EQ(verdictsOf(repeated(start, 1'000'000 / start.size()) + logOf("unknown-id")).back(),
              "session normal refresh-rate");
    const auto many = verdictsOf(repeated(joined(logOf("offer-configured"), " "), 100));
    EXPECT_EQ(many.size(), 200u);
    EXPECT_EQ(many.at(198), expectedVerdicts().at("offer-configured").at(0));
}

TEST(DamagedLog, ValueThatMayBeCutProvesNothing) {
    const std::string handle = "HWND = 0";
    std::string log = before(logOf("other-process"), "HWND = 0x") + handle;
    EXPECT_THAT(verdictsOf(log), ElementsAre("game 1001 ? no-offer cut-off", "session cut-off refresh-rate"));
    log = before(logOf("refused-three-times"), "getNumberOfToastsShown = 0");
    EXPECT_THAT(verdictsOf(log + "getNumberOfToastsShown = 3"),
                ElementsAre("game 1001 StarlitHarbour.exe no-offer cut-off", "session cut-off fps-parameter"));
    // The same in front of another start.
    EXPECT_THAT(
        verdictsOf(before(logOf("other-process"), "HWND = 0x") + handle + logOf("database-empty")),
        ElementsAre("game 1001 ? no-offer cut-off", "session cut-off refresh-rate", "session no-titles refresh-rate"));
}

TEST(DamagedLog, SecondStartBetweenAGamesLinesLeavesTheGameAlone) {
    const std::string second = before(from(logOf("running-already").substr(1), "Brisk 1.09"), "Brisk : finished");
    const std::string start = second.substr(0, second.find('\n') + 1);
    const std::string exit = second.substr(start.size());
    std::string log = logOf("offer-configured");
    log = extended(log, "Brisk : switch to TRACKING", start);
    log = extended(log, "Brisk : FPS = 40", exit);
    auto expected = expectedVerdicts().at("offer-configured");
    expected.emplace_back("session running-already unknown");
    EXPECT_THAT(verdictsOf(log), ElementsAreArray(expected));
    // Two of them at once.
    log = extended(logOf("offer-configured"), "Brisk : switch to TRACKING", start + start);
    log = extended(log, "Brisk : FPS = 40", exit + exit);
    expected.emplace_back("session running-already unknown");
    EXPECT_THAT(verdictsOf(log), ElementsAreArray(expected));
    // The first one ends meanwhile.
    EXPECT_THAT(verdictsOf(changed(logOf("offer-configured"), "Brisk : finished", start + "Brisk : finished\n" + exit)),
                ElementsAre(expected[0], expected[1], expected[2]));
}

TEST(DamagedLog, CaptureThatBeginsWithinTheCommandLineIsOneSession) {
    const std::string number = "Brisk : set NumberOfIntervalsForWarming to 99999999999\n";
    EXPECT_THAT(verdictsOf(number + "Brisk : stoi argument out of range\n"), ElementsAre("session bad-number unknown"));
    const std::string last = "Brisk : looking for command line parameter -fps (fpsOverride)\n";
    for (const std::string& front :
         {last, last + "Brisk : set fpsOverride to 40\n", "Brisk : set fpsOverride to 40\n" + last}) {
        const std::string log = front + logOf("offer-configured");
        EXPECT_THAT(verdictsOf(log), ElementsAreArray(expectedVerdicts().at("offer-configured"))) << front;
        EXPECT_EQ(toldOf(log).ends.at(0).parameters.count("-fps"), front == last ? 0u : 1u);
    }
}

TEST(DamagedLog, EndOfAGameIsAGameWhereverTheLogBegins) {
    const std::string log = logOf("offer-configured");
    for (const char* line :
         {"Brisk : get current display info.\nBrisk : get", "Brisk : native resolution", "Brisk : aspect ratio",
          "Brisk : optimal resolution", "Brisk : FPS ratio", "Brisk : shouldShowToast", "Brisk : titleManager",
          "Brisk : areToasts", "Brisk : getNumberOfToastsShown"}) {
        EXPECT_EQ(verdictsOf(from(log, line)).at(0), "game ? ? offer offer configure patched") << line;
    }
    EXPECT_THAT(verdictsOf("Brisk : getNumberOfToastsShown = 3\n"),
                ElementsAre("game ? ? no-offer refused-three-times", "session cut-off unknown"));
    EXPECT_THAT(verdictsOf(from(logOf("too-few-samples"), "Brisk : insufficient")),
                ElementsAre("game ? ? no-offer too-few-samples", "session normal unknown"));
    EXPECT_THAT(verdictsOf(from(logOf("bulk-pass"), "Brisk : native resolution")).back(), "session normal unknown");
}

TEST(DamagedLog, RefusedReportOfAFailureIsNotTheOffers) {
    const std::string refused = "Brisk : ToastManager: Can't show notification\n";
    findIn(logOf("offer-toast-refused"), refused);
    EXPECT_THAT(verdictsOf(extended(logOf("offer-file-held-open"), "Brisk : failed to patch", refused)),
                ElementsAreArray(expectedVerdicts().at("offer-file-held-open")));
}

TEST(DamagedLog, WarningOfARecordingBelongsToTheSessionWhereItStands) {
    const std::string one = "# command line: brisk.exe -fps 40\n" +
                            extended(logOf("offer-configured"), "Brisk : FPS = 40", "# warning: a text may be cut\n");
    const Told told = toldOf(one + "# command line: brisk.exe\n" + logOf("unknown-id"));
    ASSERT_EQ(told.ends.size(), 2u);
    using Fact = std::pair<std::string, std::string>;
    EXPECT_THAT(told.ends[0].head,
                ElementsAre(Fact{"command line", "brisk.exe -fps 40"}, Fact{"warning", "a text may be cut"}));
    EXPECT_THAT(told.ends[1].head, ElementsAre(Fact{"command line", "brisk.exe"}));
}

TEST(DamagedLog, ParametersOfARecordingAreReadAsTheServiceReadsThem) {
    const auto parametersOf = [](const std::string& line) {
        return toldOf("# command line: " + line + "\n" + logOf("unknown-id")).ends.at(0).parameters;
    };
    using Parameters = std::map<std::string, std::string>;
    EXPECT_EQ(parametersOf("\"C:\\b.exe\" -nv 4 -fps 40 -log C:\\my dir\\x.log"),
              (Parameters{{"-nv", "4"}, {"-fps", "40"}, {"-log", "C:\\my dir\\x.log"}}));
    EXPECT_EQ(parametersOf("b.exe -nw  10 -fps abc -nt 5x"), Parameters{});
}

} // namespace
} // namespace brisk::testing
