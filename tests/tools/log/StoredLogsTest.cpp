// Verdicts from the logs that the service wrote, whole and in every state in which logs reach a supporter.
#include "tools/log/StoredLogs.h"
#include "tools/log/Verdicts.h"

#include <gmock/gmock.h>

#include <random>

namespace brisk::testing {
namespace {

using ::testing::ElementsAreArray;

class StoredLogsTest : public ::testing::TestWithParam<std::string> {
protected:
    const std::vector<std::string>& expected() const { return expectedVerdicts().at(GetParam()); }
    std::string log() const { return logOf(GetParam()); }
};

// Puts something in front of each line and behind it.
std::string framed(const std::string& log, const std::string& front, const std::string& end) {
    std::string text;
    for (const std::string& line : splitLines(log)) {
        text += front;
        text += line;
        text += end;
    }
    return text;
}

TEST_P(StoredLogsTest, VerdictIsTheExpectedOne) {
    EXPECT_THAT(verdictsOf(log()), ElementsAreArray(expected()));
}

TEST_P(StoredLogsTest, VerdictIsTheSameWhateverTheLineEndsAre) {
    EXPECT_THAT(verdictsOf(framed(log(), "", "\r\n")), ElementsAreArray(expected()));
}

TEST_P(StoredLogsTest, VerdictIsTheSameInCapturesOfTheDebuggerOutput) {
    for (const char* front :
         {"00000012\t1.23456789\t[4711] ", "17\t10:11:12.345 AM\t[4711] ", "17\t10:11:12 AM\t[4711] ", "[4711] ",
          "12:13:14.567 [4711] ", "1\t0.001\t4711\tbrisk.exe\t", "2026-01-31T12:13:14.567 4711 "}) {
        EXPECT_THAT(verdictsOf(framed(log(), front, "\r\n")), ElementsAreArray(expected())) << front;
    }
}

TEST_P(StoredLogsTest, VerdictIsTheSameInWideText) {
    std::string wide = "\xFF\xFE";
    for (const char byte : log()) {
        wide += byte;
        wide += '\0';
    }
    EXPECT_THAT(verdictsOf(wide), ElementsAreArray(expected()));
}

TEST_P(StoredLogsTest, EachLogOfSeveralHasItsVerdict) {
    std::vector<std::string> twice = expected();
    twice.insert(twice.end(), expected().begin(), expected().end());
    EXPECT_THAT(verdictsOf(log() + log()), ElementsAreArray(twice));
}

TEST_P(StoredLogsTest, VerdictIsTheSameWhenTheBytesComeOneByOne) {
    VerdictList list;
    logbook::LogReader reader(list);
    for (const char byte : log()) {
        reader.feed({&byte, 1});
    }
    reader.finish();
    EXPECT_THAT(list.lines, ElementsAreArray(expected()));
}

TEST_P(StoredLogsTest, LinesOfOthersAreListedAndChangeNothing) {
    std::mt19937 random(1);
    std::string noisy;
    std::uint64_t count = 0;
    bool isFirst = true;
    for (const std::string& line : splitLines(log())) {
        noisy += line + "\n";
        // A start that was refused is over with its second line.
        if (line.ends_with("finished") || line.ends_with("Exiting.") ||
            line.find("json.exception") != std::string::npos) {
            isFirst = true;
            continue;
        }
        for (auto more = random() % 3; more > 0 && !isFirst; --more) {
            noisy += more % 2 == 0 ? "something else\n" : "Brisk : a line of a later version\n";
            ++count;
        }
        isFirst = false;
    }
    VerdictList list;
    logbook::LogReader reader(list);
    reader.feed(noisy);
    reader.finish();
    // What is unknown and stands last is an error's text.
    if (!noisy.ends_with("version\n") && !noisy.ends_with("else\n")) {
        EXPECT_THAT(list.lines, ElementsAreArray(expected()));
        EXPECT_EQ(list.unknownLines + reader.strayCount(), count);
    }
}

TEST_P(StoredLogsTest, LogThatIsCutAnywhereTellsNothingWrong) {
    const std::string whole = log();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const auto verdicts = verdictsOf(std::string_view(whole).substr(0, size));
        ASSERT_LE(verdicts.size(), expected().size()) << size;
        for (std::size_t index = 0; index < verdicts.size(); ++index) {
            const std::string& verdict = verdicts[index];
            const bool isCut = verdict.find("cut-off") != std::string::npos;
            // An answer, or the display's rate, may be among what is missing.
            const bool isSoFar = expected()[index].starts_with(verdict) || verdict.ends_with("offer none") ||
                                 verdict.starts_with("session") || verdict.starts_with("pass");
            const bool isWaiting = verdict.find("never-in-foreground") != std::string::npos;
            // Without its end a dead game may be followed on; a cut pair of lines tells of one game alone.
            ASSERT_TRUE(isCut || isSoFar || isWaiting || verdict.find("second-game") != std::string::npos)
                << size << ": " << verdict << " instead of " << expected()[index];
        }
    }
}

TEST_P(StoredLogsTest, LogWhoseFrontIsMissingIsReadFromThere) {
    const std::string whole = log();
    for (std::size_t begin = 0; begin < whole.size(); ++begin) {
        EXPECT_LE(verdictsOf(std::string_view(whole).substr(begin)).size(), expected().size() + 2) << begin;
    }
}

std::vector<std::string> names() {
    std::vector<std::string> all;
    for (const auto& [name, verdicts] : expectedVerdicts()) {
        all.push_back(name);
    }
    return all;
}

INSTANTIATE_TEST_SUITE_P(Logs, StoredLogsTest, ::testing::ValuesIn(names()),
                         [](const ::testing::TestParamInfo<std::string>& name) {
                             std::string word = name.param;
                             std::replace(word.begin(), word.end(), '-', '_');
                             return word;
                         });

TEST(StoredLogs, EveryKeptLogHasItsVerdictAndEveryVerdictItsLog) {
    std::vector<std::string> kept;
    for (const auto& entry : std::filesystem::directory_iterator(place(BRISK_LOGS))) {
        kept.push_back(entry.path().stem().string());
    }
    EXPECT_THAT(kept, ::testing::UnorderedElementsAreArray(names()));
}

TEST(StoredLogs, CutLogsThatAreGluedTogetherHaveTheirVerdicts) {
    std::mt19937 random(2);
    const std::vector<std::string> all = names();
    for (int round = 0; round < 2000; ++round) {
        std::string glued;
        for (int part = 0; part < 3; ++part) {
            const std::string log = logOf(all[random() % all.size()]);
            glued += log.substr(0, random() % (log.size() + 1));
        }
        const std::string& last = all[random() % all.size()];
        const auto verdicts = verdictsOf(glued + logOf(last));
        const auto& expected = expectedVerdicts().at(last);
        ASSERT_GE(verdicts.size(), expected.size());
        const std::vector<std::string> end(verdicts.end() - static_cast<std::ptrdiff_t>(expected.size()),
                                           verdicts.end());
        ASSERT_THAT(end, ElementsAreArray(expected)) << glued;
    }
}

TEST(StoredLogs, ServicesOfTwoUsersInOneCaptureAreToldApart) {
    const auto one = splitLines(logOf("offer-configured"));
    const auto other = splitLines(logOf("other-process"));
    std::string capture;
    for (std::size_t line = 0; line < std::max(one.size(), other.size()); ++line) {
        capture += line < one.size() ? "1.5 [100] " + one[line] + "\n" : "";
        capture += line < other.size() ? "1.5 [200] " + other[line] + "\n" : "";
    }
    auto expected = expectedVerdicts().at("offer-configured");
    const auto& second = expectedVerdicts().at("other-process");
    expected.insert(expected.end(), second.begin(), second.end());
    EXPECT_THAT(verdictsOf(capture), ElementsAreArray(expected));
}

} // namespace
} // namespace brisk::testing
