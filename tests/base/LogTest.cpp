#include "base/Log.h"

#include "support/Faults.h"
#include "support/Sandbox.h"

#include <gmock/gmock.h>

#include <thread>

BRISK_FAULT_POINT("kernel32.dll", OutputDebugStringA)

namespace brisk {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class LogTest : public ::testing::Test {
protected:
    LogTest() {
        OutputDebugStringAFault.intercept([this](LPCSTR text) { debuggerOutput.emplace_back(text); });
    }
    ~LogTest() override { faults::reset(); }

    std::filesystem::path file() const { return folder / "brisk.log"; }

    // One text a call.
    std::vector<std::string> debuggerOutput;
    testing::TemporaryFolder folder;
    Log log;
};

TEST_F(LogTest, WithoutAFilePathALineReachesTheDebuggerOutputWithItsNewline) {
    log.line("Brisk : finished");
    EXPECT_THAT(debuggerOutput, ElementsAre("Brisk : finished\n"));
}

TEST_F(LogTest, LinesOfTheProcessGoToTheProcessLog) {
    logText("Brisk : ");
    logLine("finished");
    EXPECT_THAT(debuggerOutput, ElementsAre("Brisk : finished\n"));
}

TEST_F(LogTest, FirstLineCreatesTheFileAndLaterLinesAreAppended) {
    log.setFilePath(toNarrow(file()));
    EXPECT_FALSE(std::filesystem::exists(file()));
    log.line("Brisk : ", "started");
    EXPECT_EQ(testing::readFile(file()), "Brisk : started\r\n");
    log.line("Brisk : finished");
    EXPECT_EQ(testing::readFile(file()), "Brisk : started\r\nBrisk : finished\r\n");
}

TEST_F(LogTest, FileOfAnEarlierRunIsAppendedToAndNeverTruncated) {
    testing::writeFile(file(), "Brisk : started\r\nBrisk : finished\r\n");
    Log restarted;
    restarted.setFilePath(toNarrow(file()));
    restarted.line("Brisk : started");
    EXPECT_EQ(testing::readFile(file()), "Brisk : started\r\nBrisk : finished\r\nBrisk : started\r\n");
}

TEST_F(LogTest, WithAFilePathNothingGoesToTheDebuggerOutput) {
    log.setFilePath(toNarrow(file()));
    log.line("Brisk : finished");
    EXPECT_THAT(debuggerOutput, IsEmpty());
    log.setFilePath({});
    log.line("Brisk : to the debugger again");
    EXPECT_THAT(debuggerOutput, ElementsAre("Brisk : to the debugger again\n"));
    EXPECT_EQ(testing::readFile(file()), "Brisk : finished\r\n");
}

TEST_F(LogTest, TwoConsecutiveLinesNeverMix) {
    log.line("Brisk : one");
    log.line("Brisk : two");
    EXPECT_THAT(debuggerOutput, ElementsAre("Brisk : one\n", "Brisk : two\n"));
}

TEST_F(LogTest, TextWithoutALineEndStandsAtTheFrontOfTheNextLine) {
    log.text("Brisk : ", 1, ", ");
    EXPECT_THAT(debuggerOutput, IsEmpty());
    log.text(2, ", ");
    log.line(3);
    EXPECT_THAT(debuggerOutput, ElementsAre("Brisk : 1, 2, 3\n"));
}

TEST_F(LogTest, ValuesAreWrittenAsAStreamWritesThemByDefault) {
    log.line(std::string("Brisk : "), -5, ' ', 18446744073709551615u, ' ', 59.94, ' ', 0.1 + 0.2, ' ', 1e10, ' ', true,
             ' ', false);
    EXPECT_THAT(debuggerOutput, ElementsAre("Brisk : -5 18446744073709551615 59.94 0.3 1e+10 1 0\n"));
}

TEST_F(LogTest, NumberBaseStaysForLaterLinesUntilOneChangesIt) {
    log.line("Brisk : ", std::hex, std::showbase, 255);
    log.line("Brisk : ", 255);
    log.line("Brisk : ", std::dec, 255);
    log.line("Brisk : ", 255);
    EXPECT_THAT(debuggerOutput, ElementsAre("Brisk : 0xff\n", "Brisk : 0xff\n", "Brisk : 255\n", "Brisk : 255\n"));
}

TEST_F(LogTest, FailedInsertionDoesNotBlockLaterLines) {
    log.line("Brisk : nothing behind ", static_cast<const char*>(nullptr), "this");
    log.line("Brisk : next");
    EXPECT_THAT(debuggerOutput, ElementsAre("Brisk : nothing behind ", "Brisk : next\n"));
}

TEST_F(LogTest, EmbeddedZeroReachesTheFile) {
    log.setFilePath(toNarrow(file()));
    log.line(std::string("Brisk : a\0b", 11));
    EXPECT_EQ(testing::readFile(file()), std::string("Brisk : a\0b\r\n", 13));
}

TEST_F(LogTest, EmbeddedZeroEndsTheTextForTheDebugger) {
    log.line(std::string("Brisk : a\0b", 11));
    EXPECT_THAT(debuggerOutput, ElementsAre("Brisk : a"));
}

TEST_F(LogTest, LineIsOnDiskAtOnceAndTheFileMayBeDeletedOrMovedBetweenLines) {
    log.setFilePath(toNarrow(file()));
    log.line("Brisk : one");
    EXPECT_TRUE(std::filesystem::remove(file()));
    log.line("Brisk : two");
    std::filesystem::rename(file(), folder / "moved.log");
    log.line("Brisk : three");
    EXPECT_EQ(testing::readFile(folder / "moved.log"), "Brisk : two\r\n");
    EXPECT_EQ(testing::readFile(file()), "Brisk : three\r\n");
}

TEST_F(LogTest, OthersMayReadAndWriteTheFileMeanwhile) {
    testing::writeFile(file(), "");
    const HANDLE other = CreateFileW(file().c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                     nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(other, INVALID_HANDLE_VALUE);
    log.setFilePath(toNarrow(file()));
    log.line("Brisk : read by others");
    char text[64];
    DWORD length = 0;
    EXPECT_TRUE(ReadFile(other, text, sizeof text, &length, nullptr));
    EXPECT_EQ(std::string(text, length), "Brisk : read by others\r\n");
    EXPECT_TRUE(WriteFile(other, "another's\r\n", 11, &length, nullptr));
    log.line("Brisk : behind it");
    CloseHandle(other);
    EXPECT_EQ(testing::readFile(file()), "Brisk : read by others\r\nanother's\r\nBrisk : behind it\r\n");
}

TEST_F(LogTest, PathThatIsAFolderLosesTheLinesWithoutAnyOtherEffect) {
    log.setFilePath(folder.narrow());
    log.line("Brisk : lost");
    log.setFilePath(toNarrow(file()));
    log.line("Brisk : kept");
    EXPECT_EQ(testing::readFile(file()), "Brisk : kept\r\n");
    EXPECT_THAT(debuggerOutput, IsEmpty());
}

TEST_F(LogTest, PathInAMissingFolderLosesTheLinesWithoutAnyOtherEffect) {
    log.setFilePath(toNarrow(folder / "missing" / "brisk.log"));
    log.line("Brisk : lost");
    EXPECT_FALSE(std::filesystem::exists(folder / "missing"));
    log.setFilePath(toNarrow(file()));
    log.line("Brisk : kept");
    EXPECT_EQ(testing::readFile(file()), "Brisk : kept\r\n");
    EXPECT_THAT(debuggerOutput, IsEmpty());
}

TEST_F(LogTest, FullDiskLosesTheLinesWithoutAnyOtherEffect) {
    // A device of the system below Wine: it opens, and takes nothing.
    constexpr char kFullDevice[] = "Z:\\dev\\full";
    std::ofstream device(kFullDevice, std::ios::out | std::ios::app);
    if (!device.is_open()) {
        GTEST_SKIP() << "no disk that is always full";
    }
    EXPECT_FALSE(device << "x" << std::flush);
    log.setFilePath(kFullDevice);
    log.line("Brisk : lost");
    log.setFilePath(toNarrow(file()));
    log.line("Brisk : kept");
    EXPECT_EQ(testing::readFile(file()), "Brisk : kept\r\n");
    EXPECT_THAT(debuggerOutput, IsEmpty());
}

TEST_F(LogTest, LinesAreWrittenAgainOnceThePathCanBeOpened) {
    log.setFilePath(toNarrow(folder / "later" / "brisk.log"));
    log.line("Brisk : lost");
    std::filesystem::create_directory(folder / "later");
    log.line("Brisk : kept");
    EXPECT_EQ(testing::readFile(folder / "later" / "brisk.log"), "Brisk : kept\r\n");
}

TEST_F(LogTest, PathIsReadInTheProcessCodePage) {
    log.setFilePath(folder.narrow() + "\\J\xC3\xBCrgen's log.txt");
    log.line("Brisk : gr\xC3\xBC\xC3\x9F dich");
    EXPECT_EQ(testing::readFile(folder / L"J\u00FCrgen's log.txt"), "Brisk : gr\xC3\xBC\xC3\x9F dich\r\n");
}

TEST_F(LogTest, LinesOfSeveralThreadsStayWhole) {
    constexpr int kLines = 25;
    log.setFilePath(toNarrow(file()));
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([this] {
            for (int line = 0; line < kLines; ++line) {
                log.line("Brisk : ", "one", " of ", "many", " lines");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const std::vector<std::string> lines = testing::splitLines(testing::readFile(file()));
    EXPECT_THAT(lines, SizeIs(4 * kLines));
    EXPECT_THAT(lines, Each("Brisk : one of many lines"));
}

} // namespace
} // namespace brisk
