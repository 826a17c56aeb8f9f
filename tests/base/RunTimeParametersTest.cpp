#include "base/RunTimeParameters.h"

#include "support/Sandbox.h"

#include <gmock/gmock.h>

#include <functional>

namespace brisk {
namespace {

using ::testing::ElementsAre;

const std::string kLookingForWarming = "Brisk : looking for command line parameter -nw (NumberOfIntervalsForWarming)";
const std::string kLookingForTracking = "Brisk : looking for command line parameter -nt (NumberOfIntervalsForTracking)";
const std::string kLookingForNotTracking =
    "Brisk : looking for command line parameter -nn (NumberOfIntervalsForNotTracking)";
const std::string kLookingForValid =
    "Brisk : looking for command line parameter -nv (NumberOfTrackingIntervalsToBeValid)";
const std::string kLookingForFps = "Brisk : looking for command line parameter -fps (fpsOverride)";
const std::string kLookingForLog = "Brisk : looking for command line parameter -log (logToFile)";

// Read before any test changes them.
const std::vector<std::uint64_t> kInitialCounts{NumberOfIntervalsForWarming, NumberOfIntervalsForTracking,
                                                NumberOfIntervalsForNotTracking, NumberOfTrackingIntervalsToBeValid};

class RunTimeParametersTest : public ::testing::Test {
protected:
    RunTimeParametersTest() { setDefaults(); }
    ~RunTimeParametersTest() override { setDefaults(); }

    static void setDefaults() {
        NumberOfIntervalsForWarming = 120;
        NumberOfIntervalsForTracking = 30;
        NumberOfIntervalsForNotTracking = 120;
        NumberOfTrackingIntervalsToBeValid = 120;
        fpsOverride.reset();
        logToFile.reset();
    }

    // All six variables after parsing the line, which starts from the defaults.
    static std::string parse(const std::string& commandLine) {
        setDefaults();
        parseParameters(commandLine);
        return variables();
    }

    static std::string variables() {
        std::ostringstream text;
        text << NumberOfIntervalsForWarming << ' ' << NumberOfIntervalsForTracking << ' '
             << NumberOfIntervalsForNotTracking << ' ' << NumberOfTrackingIntervalsToBeValid << " fps "
             << (fpsOverride ? std::to_string(*fpsOverride) : "none") << " log "
             << (logToFile ? '[' + *logToFile + ']' : "none");
        return text.str();
    }

    testing::CapturedLog log;
};

constexpr char kDefaults[] = "120 30 120 120 fps none log none";

// The service's main thread has a stack of this size; a test program's own is smaller.
void runWithTheServicesStack(std::function<void()> function) {
    constexpr SIZE_T kServiceStack = 16777216;
    const HANDLE thread = CreateThread(
        nullptr, kServiceStack,
        [](LPVOID parameter) -> DWORD {
            (*static_cast<std::function<void()>*>(parameter))();
            return 0;
        },
        &function, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    ASSERT_NE(thread, nullptr);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
}

TEST_F(RunTimeParametersTest, BuiltInValuesAreTheDefaults) {
    EXPECT_THAT(kInitialCounts, ElementsAre(120, 30, 120, 120));
}

TEST_F(RunTimeParametersTest, EmptyCommandLineLooksForAllSixAndKeepsTheDefaults) {
    EXPECT_EQ(parse(""), kDefaults);
    EXPECT_THAT(log.take(), ElementsAre(kLookingForWarming, kLookingForTracking, kLookingForNotTracking,
                                        kLookingForValid, kLookingForFps, kLookingForLog));
}

TEST_F(RunTimeParametersTest, TrackingIntervalsAndFrameRateAreSetWithALineEach) {
    EXPECT_EQ(parse("-nt 45 -fps 60"), "120 45 120 120 fps 60 log none");
    EXPECT_THAT(log.take(),
                ElementsAre(kLookingForWarming, kLookingForTracking, "Brisk : set NumberOfIntervalsForTracking to 45",
                            kLookingForNotTracking, kLookingForValid, kLookingForFps, "Brisk : set fpsOverride to 60",
                            kLookingForLog));
}

TEST_F(RunTimeParametersTest, AllSixAreSetInAnyOrder) {
    EXPECT_EQ(parse("-fps 5 -nv 4 -nn 3 -nt 2 -nw 1 -log a.txt"), "1 2 3 4 fps 5 log [a.txt]");
    EXPECT_THAT(log.take(),
                ElementsAre(kLookingForWarming, "Brisk : set NumberOfIntervalsForWarming to 1", kLookingForTracking,
                            "Brisk : set NumberOfIntervalsForTracking to 2", kLookingForNotTracking,
                            "Brisk : set NumberOfIntervalsForNotTracking to 3", kLookingForValid,
                            "Brisk : set NumberOfTrackingIntervalsToBeValid to 4", kLookingForFps,
                            "Brisk : set fpsOverride to 5", kLookingForLog, "Brisk : set logToFile to a.txt"));
}

TEST_F(RunTimeParametersTest, LogPathKeepsItsBlanks) {
    EXPECT_EQ(parse("-log C:\\Temp\\my log.txt"), "120 30 120 120 fps none log [C:\\Temp\\my log.txt]");
    EXPECT_THAT(log.take(),
                ElementsAre(kLookingForWarming, kLookingForTracking, kLookingForNotTracking, kLookingForValid,
                            kLookingForFps, kLookingForLog, "Brisk : set logToFile to C:\\Temp\\my log.txt"));
}

TEST_F(RunTimeParametersTest, LogPathExtendsToTheEndOfTheCommandLine) {
    EXPECT_EQ(parse("-log \"C:\\my log.txt\" "), "120 30 120 120 fps none log [\"C:\\my log.txt\" ]");
    EXPECT_EQ(parse("-log a.txt -nw 5"), "5 30 120 120 fps none log [a.txt -nw 5]");
    EXPECT_EQ(parse("-log a.txt -log b.txt"), "120 30 120 120 fps none log [a.txt -log b.txt]");
    EXPECT_EQ(parse("-log  a.txt"), "120 30 120 120 fps none log [ a.txt]");
    EXPECT_EQ(parse("-log gr\xC3\xBC\xC3\x9F.txt"), "120 30 120 120 fps none log [gr\xC3\xBC\xC3\x9F.txt]");
}

TEST_F(RunTimeParametersTest, LogPathEndsAtALineBreak) {
    EXPECT_EQ(parse("-log a.txt\n-nw 5"), "5 30 120 120 fps none log [a.txt]");
    EXPECT_EQ(parse("-log a.txt\r\nb"), "120 30 120 120 fps none log [a.txt]");
}

TEST_F(RunTimeParametersTest, LogPathMayBeEmpty) {
    EXPECT_EQ(parse("-log "), "120 30 120 120 fps none log []");
    EXPECT_EQ(parse("-log"), kDefaults);
}

TEST_F(RunTimeParametersTest, LogPathSetBeforeIsReplaced) {
    parseParameters("-log a longer path than the next.txt");
    parseParameters("-log b.txt");
    EXPECT_EQ(logToFile, "b.txt");
}

TEST_F(RunTimeParametersTest, FrameRateOfZeroIsAccepted) {
    EXPECT_EQ(parse("-fps 0"), "120 30 120 120 fps 0 log none");
}

TEST_F(RunTimeParametersTest, NumbersMustConsistOfDigitsOnly) {
    EXPECT_EQ(parse("-nw 10x"), kDefaults);
    EXPECT_EQ(parse("-nw -5"), kDefaults);
    EXPECT_EQ(parse("-nw +5"), kDefaults);
    EXPECT_EQ(parse("-nw 0x10"), kDefaults);
    EXPECT_EQ(parse("-nw 1.5"), kDefaults);
    EXPECT_EQ(parse("-fps abc"), kDefaults);
    EXPECT_EQ(parse("-nw \"10\""), kDefaults);
    EXPECT_EQ(parse("-nw"), kDefaults);
    EXPECT_EQ(parse("-nw "), kDefaults);
    EXPECT_EQ(parse("-nw 0010"), "10 30 120 120 fps none log none");
}

TEST_F(RunTimeParametersTest, NumbersAreLoggedAsTheyStand) {
    parse("-nw 0010 -fps 007");
    EXPECT_THAT(log.take(), ElementsAre(kLookingForWarming, "Brisk : set NumberOfIntervalsForWarming to 0010",
                                        kLookingForTracking, kLookingForNotTracking, kLookingForValid, kLookingForFps,
                                        "Brisk : set fpsOverride to 007", kLookingForLog));
}

TEST_F(RunTimeParametersTest, ExactlyOneWhiteSpaceStandsBetweenFlagAndNumber) {
    EXPECT_EQ(parse("-nw  10"), kDefaults);
    EXPECT_EQ(parse("-nw10"), kDefaults);
    EXPECT_EQ(parse("-nw=10"), kDefaults);
    EXPECT_EQ(parse("-nw\t10"), "10 30 120 120 fps none log none");
    EXPECT_EQ(parse("-nw\n10"), "10 30 120 120 fps none log none");
}

TEST_F(RunTimeParametersTest, FlagStandsAtTheStartOrAfterWhiteSpace) {
    EXPECT_EQ(parse("x-nw 10"), kDefaults);
    EXPECT_EQ(parse("--nw 10"), kDefaults);
    EXPECT_EQ(parse("\"-nw 10\""), kDefaults);
    EXPECT_EQ(parse("brisk.exe\t-nw 10"), "10 30 120 120 fps none log none");
    EXPECT_EQ(parse("   -nw 10   "), "10 30 120 120 fps none log none");
}

TEST_F(RunTimeParametersTest, FiveNumbersFollowTheSameRules) {
    for (const std::string flag : {"-nw", "-nt", "-nn", "-nv", "-fps"}) {
        for (const char* malformed : {"", " ", "  10", "10", " 10x", " -5", " 1.5"}) {
            EXPECT_EQ(parse(flag + malformed), kDefaults);
        }
        EXPECT_EQ(parse("x" + flag + " 10"), kDefaults);
        EXPECT_NE(parse("x\t" + flag + "\t10\t"), kDefaults);
    }
}

TEST_F(RunTimeParametersTest, FlagsAreCaseSensitive) {
    EXPECT_EQ(parse("-NW 10 -Fps 60 -LOG a.txt"), kDefaults);
}

TEST_F(RunTimeParametersTest, FirstWellFormedOccurrenceWins) {
    EXPECT_EQ(parse("-nw 5 -nw 6"), "5 30 120 120 fps none log none");
    EXPECT_EQ(parse("-nw 5x -nw 6"), "6 30 120 120 fps none log none");
    EXPECT_EQ(parse("-nw -nw 6"), "6 30 120 120 fps none log none");
}

TEST_F(RunTimeParametersTest, LargestNumberIsThatOfASigned32BitInteger) {
    EXPECT_EQ(parse("-nw 2147483647 -fps 2147483647"), "2147483647 30 120 120 fps 2147483647 log none");
    log.take();
    for (const std::string number : {"2147483648", "99999999999", "99999999999999999999999"}) {
        try {
            parse("-nt 7 -nw " + number);
            ADD_FAILURE() << number << " was accepted";
        } catch (const std::out_of_range& error) {
            EXPECT_STREQ(error.what(), "stoi argument out of range");
        }
        // Parsing stops there.
        EXPECT_THAT(log.take(),
                    ElementsAre(kLookingForWarming, "Brisk : set NumberOfIntervalsForWarming to " + number));
        EXPECT_EQ(NumberOfIntervalsForWarming, 120u);
        EXPECT_EQ(NumberOfIntervalsForTracking, 30u);
    }
}

TEST_F(RunTimeParametersTest, EachNumberThatIsTooLargeIsAnErrorBehindWhichNothingIsSet) {
    const struct {
        const char* commandLine;
        const char* lastLine;
        const char* variables;
    } cases[] = {
        {"-nw 2147483648 -nt 2 -nn 3 -nv 4 -fps 5 -log a.txt", "Brisk : set NumberOfIntervalsForWarming to 2147483648",
         kDefaults},
        {"-nw 1 -nt 2147483648 -nn 3 -nv 4 -fps 5 -log a.txt", "Brisk : set NumberOfIntervalsForTracking to 2147483648",
         "1 30 120 120 fps none log none"},
        {"-nw 1 -nt 2 -nn 2147483648 -nv 4 -fps 5 -log a.txt",
         "Brisk : set NumberOfIntervalsForNotTracking to 2147483648", "1 2 120 120 fps none log none"},
        {"-nw 1 -nt 2 -nn 3 -nv 2147483648 -fps 5 -log a.txt",
         "Brisk : set NumberOfTrackingIntervalsToBeValid to 2147483648", "1 2 3 120 fps none log none"},
        {"-nw 1 -nt 2 -nn 3 -nv 4 -fps 2147483648 -log a.txt", "Brisk : set fpsOverride to 2147483648",
         "1 2 3 4 fps none log none"},
    };
    for (const auto& [commandLine, lastLine, expected] : cases) {
        try {
            parse(commandLine);
            ADD_FAILURE() << commandLine << " was accepted";
        } catch (const std::out_of_range& error) {
            EXPECT_STREQ(error.what(), "stoi argument out of range");
        }
        EXPECT_EQ(variables(), expected);
        EXPECT_EQ(log.take().back(), lastLine);
    }
}

TEST_F(RunTimeParametersTest, LongestCommandLineIsParsed) {
    constexpr std::size_t kLength = 32000;
    const std::string path(kLength, 'x');
    runWithTheServicesStack([&] {
        EXPECT_EQ(parse("-log " + path), "120 30 120 120 fps none log [" + path + "]");
        EXPECT_EQ(parse(std::string(kLength, ' ') + "-nw 10"), "10 30 120 120 fps none log none");
        EXPECT_EQ(parse("-nw " + std::string(kLength, '0') + "7"), "7 30 120 120 fps none log none");
        EXPECT_EQ(parse(path), kDefaults);
    });
}

} // namespace
} // namespace brisk
