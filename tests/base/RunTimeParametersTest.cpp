#include "base/RunTimeParameters.h"

#include "support/ExpectedParameters.h"
#include "support/Sandbox.h"

#include <gmock/gmock.h>

namespace brisk {
namespace {

using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using testing::kCountParameters;
using testing::Lines;
using testing::parameterLines;

// Read before any test changes them.
const std::vector<std::uint64_t> kInitialCounts = [] {
    std::vector<std::uint64_t> counts;
    for (const auto& parameter : kCountParameters) {
        counts.push_back(parameter.variable);
    }
    return counts;
}();

class RunTimeParametersTest : public ::testing::Test {
protected:
    RunTimeParametersTest() { testing::resetParameters(); }
    ~RunTimeParametersTest() override { testing::resetParameters(); }

    // The variables that differ from their defaults after parsing the line, which starts from the defaults.
    static std::string parse(const std::string& commandLine) {
        testing::resetParameters();
        parseParameters(commandLine);
        return variables();
    }

    static std::string variables() {
        std::string text;
        const auto add = [&text](const std::string& variable) { text += (text.empty() ? "" : " ") + variable; };
        for (const auto& [flag, name, variable, byDefault] : kCountParameters) {
            if (variable != byDefault) {
                add(flag + (" " + std::to_string(variable)));
            }
        }
        if (fpsOverride) {
            add("-fps " + std::to_string(*fpsOverride));
        }
        if (logToFile) {
            add("-log [" + *logToFile + "]");
        }
        return text;
    }

    testing::CapturedLog log;
};

constexpr char kDefaults[] = "";

std::vector<std::string> numberFlags() {
    std::vector<std::string> flags;
    for (const auto& parameter : kCountParameters) {
        flags.emplace_back(parameter.flag);
    }
    flags.emplace_back("-fps");
    return flags;
}

TEST_F(RunTimeParametersTest, BuiltInValuesAreTheDefaults) {
    std::vector<std::uint64_t> defaults;
    for (const auto& parameter : kCountParameters) {
        defaults.push_back(parameter.byDefault);
    }
    EXPECT_EQ(kInitialCounts, defaults);
}

TEST_F(RunTimeParametersTest, EmptyCommandLineLooksForAllSixAndKeepsTheDefaults) {
    EXPECT_EQ(parse(""), kDefaults);
    EXPECT_THAT(log.take(), ElementsAreArray(parameterLines()));
}

TEST_F(RunTimeParametersTest, TrackingIntervalsAndFrameRateAreSetWithALineEach) {
    EXPECT_EQ(parse("-nt 45 -fps 60"), "-nt 45 -fps 60");
    EXPECT_THAT(log.take(), ElementsAreArray(parameterLines({{"-nt", "45"}, {"-fps", "60"}})));
}

TEST_F(RunTimeParametersTest, AllSixAreSetInAnyOrder) {
    EXPECT_EQ(parse("-fps 5 -nv 4 -nn 3 -nt 2 -nw 1 -log a.txt"), "-nw 1 -nt 2 -nn 3 -nv 4 -fps 5 -log [a.txt]");
    EXPECT_THAT(log.take(),
                ElementsAreArray(parameterLines(
                    {{"-nw", "1"}, {"-nt", "2"}, {"-nn", "3"}, {"-nv", "4"}, {"-fps", "5"}, {"-log", "a.txt"}})));
}

TEST_F(RunTimeParametersTest, LogPathKeepsItsBlanks) {
    EXPECT_EQ(parse("-log C:\\Temp\\my log.txt"), "-log [C:\\Temp\\my log.txt]");
    EXPECT_THAT(log.take(), ElementsAreArray(parameterLines({{"-log", "C:\\Temp\\my log.txt"}})));
}

TEST_F(RunTimeParametersTest, LogPathExtendsToTheEndOfTheCommandLine) {
    EXPECT_EQ(parse("-log \"C:\\my log.txt\" "), "-log [\"C:\\my log.txt\" ]");
    EXPECT_EQ(parse("-log a.txt -nw 5"), "-nw 5 -log [a.txt -nw 5]");
    EXPECT_EQ(parse("-log a.txt -log b.txt"), "-log [a.txt -log b.txt]");
    EXPECT_EQ(parse("-log  a.txt"), "-log [ a.txt]");
    EXPECT_EQ(parse("-log gr\xC3\xBC\xC3\x9F.txt"), "-log [gr\xC3\xBC\xC3\x9F.txt]");
}

TEST_F(RunTimeParametersTest, LogPathEndsAtALineBreak) {
    EXPECT_EQ(parse("-log a.txt\n-nw 5"), "-nw 5 -log [a.txt]");
    EXPECT_EQ(parse("-log a.txt\r\nb"), "-log [a.txt]");
}

TEST_F(RunTimeParametersTest, LogPathMayBeEmpty) {
    EXPECT_EQ(parse("-log "), "-log []");
    EXPECT_EQ(parse("-log"), kDefaults);
}

TEST_F(RunTimeParametersTest, LogPathSetBeforeIsReplaced) {
    parseParameters("-log a longer path than the next.txt");
    parseParameters("-log b.txt");
    EXPECT_EQ(logToFile, "b.txt");
}

TEST_F(RunTimeParametersTest, FrameRateOfZeroIsAccepted) {
    EXPECT_EQ(parse("-fps 0"), "-fps 0");
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
    EXPECT_EQ(parse("-nw 0010"), "-nw 10");
}

TEST_F(RunTimeParametersTest, NumbersAreLoggedAsTheyStand) {
    parse("-nw 0010 -fps 007");
    EXPECT_THAT(log.take(), ElementsAreArray(parameterLines({{"-nw", "0010"}, {"-fps", "007"}})));
}

TEST_F(RunTimeParametersTest, ExactlyOneWhiteSpaceStandsBetweenFlagAndNumber) {
    EXPECT_EQ(parse("-nw  10"), kDefaults);
    EXPECT_EQ(parse("-nw10"), kDefaults);
    EXPECT_EQ(parse("-nw=10"), kDefaults);
    EXPECT_EQ(parse("-nw\t10"), "-nw 10");
    EXPECT_EQ(parse("-nw\n10"), "-nw 10");
}

TEST_F(RunTimeParametersTest, FlagStandsAtTheStartOrAfterWhiteSpace) {
    EXPECT_EQ(parse("x-nw 10"), kDefaults);
    EXPECT_EQ(parse("--nw 10"), kDefaults);
    EXPECT_EQ(parse("\"-nw 10\""), kDefaults);
    EXPECT_EQ(parse("brisk.exe\t-nw 10"), "-nw 10");
    EXPECT_EQ(parse("   -nw 10   "), "-nw 10");
}

TEST_F(RunTimeParametersTest, FiveNumbersFollowTheSameRules) {
    for (const std::string& flag : numberFlags()) {
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
    EXPECT_EQ(parse("-nw 5 -nw 6"), "-nw 5");
    EXPECT_EQ(parse("-nw 5x -nw 6"), "-nw 6");
    EXPECT_EQ(parse("-nw -nw 6"), "-nw 6");
}

TEST_F(RunTimeParametersTest, LargestNumberIsThatOfASigned32BitInteger) {
    EXPECT_EQ(parse("-nw 2147483647 -fps 2147483647"), "-nw 2147483647 -fps 2147483647");
    log.take();
    for (const std::string number : {"2147483648", "99999999999", "99999999999999999999999"}) {
        try {
            parse("-nt 7 -nw " + number);
            ADD_FAILURE() << number << " was accepted";
        } catch (const std::out_of_range& error) {
            EXPECT_STREQ(error.what(), "stoi argument out of range");
        }
        // Parsing stops there.
        EXPECT_THAT(log.take(), ElementsAreArray(parameterLines({{"-nw", number}, {"-nt", "7"}}, "-nw")));
        EXPECT_EQ(NumberOfIntervalsForWarming, 120u);
        EXPECT_EQ(NumberOfIntervalsForTracking, 30u);
    }
}

TEST_F(RunTimeParametersTest, EachNumberThatIsTooLargeIsAnErrorBehindWhichNothingIsSet) {
    const std::vector<std::string> flags = numberFlags();
    for (std::size_t tooLarge = 0; tooLarge < flags.size(); ++tooLarge) {
        std::string commandLine;
        std::string before;
        std::map<std::string, std::string> values;
        for (std::size_t i = 0; i < flags.size(); ++i) {
            values[flags[i]] = i == tooLarge ? "2147483648" : std::to_string(i + 1);
            commandLine += flags[i] + " " + values[flags[i]] + " ";
            before = i < tooLarge ? commandLine : before;
        }
        try {
            parse(commandLine + "-log a.txt");
            ADD_FAILURE() << commandLine << " was accepted";
        } catch (const std::out_of_range& error) {
            EXPECT_STREQ(error.what(), "stoi argument out of range");
        }
        EXPECT_EQ(variables() + (before.empty() ? "" : " "), before);
        EXPECT_THAT(log.take(), ElementsAreArray(parameterLines(values, flags[tooLarge])));
    }
}

TEST_F(RunTimeParametersTest, LongestCommandLineIsParsed) {
    constexpr std::size_t kLength = 32000;
    const std::string path(kLength, 'x');
    // On a stack of 2 MB, the service's own.
    EXPECT_EQ(parse("-log " + path), "-log [" + path + "]");
    EXPECT_EQ(parse(std::string(kLength, ' ') + "-nw 10"), "-nw 10");
    EXPECT_EQ(parse("-nw " + std::string(kLength, '0') + "7"), "-nw 7");
    EXPECT_EQ(parse(path), kDefaults);
}

} // namespace
} // namespace brisk
