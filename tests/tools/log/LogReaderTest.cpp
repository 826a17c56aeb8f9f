// What no log of the folder `logs` has: limits, and lines that need a fault of Windows.
#include "tools/log/Explanation.h"
#include "tools/log/LineTable.h"
#include "tools/log/LogLine.h"
#include "tools/log/Redaction.h"
#include "tools/log/TitleFacts.h"
#include "tools/log/Verdicts.h"

#include <gmock/gmock.h>

namespace brisk::testing {
namespace {

using namespace logbook;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr char kStart[] = "Brisk 1.09 : started\nBrisk : titles DB processed.\n"
                          "Brisk : access to the Windows Registry granted.\n"
                          "Brisk : initializing GfxInfoGen.\nBrisk : get current display info.\n";

// The texts of a line's pieces.
std::vector<std::string> piecesOf(std::string_view text) {
    std::vector<std::string> pieces;
    LineSplitter().split(text, 1, true, [&pieces](const LogLine& line) { pieces.emplace_back(line.text); });
    return pieces;
}

TEST(LineSplitter, TakesTheConditionsLineAndTheNextOneApart) {
    EXPECT_THAT(piecesOf("Brisk : current configuration with key 'K' and value 'V' doesn't meet requirements.Brisk : "
                         "titleManager.isTitleNeedToBeOptimized = 0"),
                ElementsAre("Brisk : current configuration with key 'K' and value 'V' doesn't meet requirements.",
                            "Brisk : titleManager.isTitleNeedToBeOptimized = 0"));
}

TEST(LineSplitter, LeavesTheServicesNameInAPathAlone) {
    EXPECT_THAT(piecesOf("Brisk : checking path 'C:\\Brisk : 5\\Brisk 2\\a.ini'."),
                ElementsAre("Brisk : checking path 'C:\\Brisk : 5\\Brisk 2\\a.ini'."));
}

TEST(LineSplitter, FindsTimeAndProcessInFrontOfALine) {
    std::size_t lines = 0;
    LineSplitter().split("00000012\t1.23456789\t[4711] Brisk : finished", 3, true, [&lines](const LogLine& line) {
        ++lines;
        EXPECT_EQ(line.time, "1.23456789");
        EXPECT_EQ(line.processId, 4711u);
        EXPECT_EQ(line.text, "Brisk : finished");
        EXPECT_EQ(line.kind, LineKind::Finished);
    });
    EXPECT_EQ(lines, 1u);
}

TEST(LogReader, ErrorThatNobodyKnowsIsTheLastLine) {
    EXPECT_THAT(verdictsOf(std::string(kStart) + "Brisk : something unheard of\n"),
                ElementsAre("session error refresh-rate"));
    EXPECT_THAT(verdictsOf(std::string(kStart) + "Brisk : something unheard of"),
                ElementsAre("session cut-off refresh-rate"));
    EXPECT_THAT(verdictsOf(std::string(kStart) + "Brisk : switch to TRA\n"),
                ElementsAre("session cut-off refresh-rate"));
}

TEST(LogReader, NoDisplayAndNoNumberEndAStart) {
    EXPECT_THAT(verdictsOf(std::string(kStart) + "Brisk : failed to create GfxInfo.\nBrisk : finished\n"),
                ElementsAre("session no-graphics refresh-rate"));
    EXPECT_THAT(verdictsOf("Brisk : looking for command line parameter -nw (NumberOfIntervalsForWarming)\n"
                           "Brisk : set NumberOfIntervalsForWarming to 99999999999\n"
                           "Brisk : stoi argument out of range\n"),
                ElementsAre("session bad-number unknown"));
}

TEST(LogReader, EmptyLogHasNoSession) {
    EXPECT_THAT(verdictsOf(""), ElementsAre());
    EXPECT_THAT(verdictsOf("nothing of ours\n\n"), ElementsAre());
}

TEST(LogReader, LineOfAnyLengthIsRead) {
    EXPECT_THAT(verdictsOf(std::string(kStart) + std::string(1'000'000, 'x') + "\nBrisk : finished\n"),
                ElementsAre("session normal refresh-rate"));
}

TEST(LogReader, ParametersOfACaptureAreKnown) {
    struct Sink : VerdictSink {
        std::string words;
        std::map<std::string, std::string> parameters;
        void onGame(const Session& session, const Game& game) override { words = explain(session, game).verdict; }
        void onSession(const Session& session) override { parameters = session.parameters; }
    } sink;
    LogReader reader(sink);
    reader.feed("Brisk : looking for command line parameter -nw (NumberOfIntervalsForWarming)\n"
                "Brisk : looking for command line parameter -nv (NumberOfTrackingIntervalsToBeValid)\n"
                "Brisk : set NumberOfTrackingIntervalsToBeValid to 7\n");
    reader.feed(kStart);
    reader.feed("Brisk : onAppStarted, p1 = 5, p2 = 0x1\nBrisk : waiting for activation, GameID 5, PID 0x1\n"
                "Brisk : switch to WAITING_APP\nBrisk : switch to APP_WARMING\nBrisk : switch to TRACKING\n"
                "Brisk : FPS = 14\nBrisk : onAppFinished, p1 = 0, p2 = 0\nBrisk : switch to IDLE\n"
                "Brisk : average fps = 0, intervals = 0\nBrisk : insufficient data collected (0 intervals).\n");
    reader.finish();
    EXPECT_EQ(sink.parameters.at("-nv"), "7");
    EXPECT_THAT(sink.words, HasSubstr("0 of 7. 1 sample lies outside of 15 to 300"));
}

TEST(Redaction, TakesUserNamesOutOfPaths) {
    Redaction redaction;
    EXPECT_EQ(redaction.apply("checking path 'C:\\Users\\Max O'Neill\\AppData\\Local\\x.ini'."),
              "checking path 'C:\\Users\\(user)\\AppData\\Local\\x.ini'.");
    EXPECT_EQ(redaction.apply("\"C:\\\\users\\\\me\\\\x.ini\""), "\"C:\\\\users\\\\(user)\\\\x.ini\"");
    EXPECT_EQ(redaction.apply("/home/me/brisk.log: D:\\me\\x.ini"), "/home/(user)/brisk.log: D:\\(user)\\x.ini");
    EXPECT_EQ(redaction.apply("\\\\server\\profiles\\ada\\AppData\\x"), "\\\\server\\profiles\\(user)\\AppData\\x");
    EXPECT_EQ(redaction.apply("C:\\Users\\Public\\Games\\x.ini"), "C:\\Users\\Public\\Games\\x.ini");
}

TEST(TitleFacts, FieldsAreFoundByTheWantedValueOfTheDisplay) {
    const DatabaseFacts facts = readDatabaseFacts("titles_db.json", R"([
{"config_type": "txt", "id": 7, "binary_name": "a.exe",
 "publisher": "P",
 "config_fields": [{"key": "w", "meta": "width"},
                   {"key": "h", "value": 600},
                   {"key": "t", "value": "On"}]}])");
    const TitleFacts* title = facts.find("a.exe");
    ASSERT_NE(title, nullptr);
    EXPECT_EQ(title->publisherLine, 3u);
    EXPECT_EQ(facts.find(7), title);
    const auto lines = [title](const char* wanted) {
        std::vector<std::size_t> found;
        for (const auto* field : findFields(*title, wanted, "1024x768", "800x600")) {
            found.push_back(field->line);
        }
        return found;
    };
    EXPECT_THAT(lines("800"), ElementsAre(4));
    EXPECT_THAT(lines("600"), ElementsAre(5));
    EXPECT_THAT(lines("On"), ElementsAre(6));
}

} // namespace
} // namespace brisk::testing
