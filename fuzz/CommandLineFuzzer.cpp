#include "base/RunTimeParameters.h"
#include "fuzz/Fuzzing.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

// The command line, read a second time without regular expressions.

namespace brisk {
namespace {

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";
constexpr long long kMaximum = 2147483647;

bool isWhiteSpace(char byte) {
    return kWhiteSpace.find(byte) != std::string_view::npos;
}

// What stands behind the flag and one white space, for every place of the flag that counts.
template <class Accept>
std::optional<std::string> findValue(const std::string& line, const std::string& flag, const Accept& accept) {
    for (std::size_t at = line.find(flag); at != std::string::npos; at = line.find(flag, at + 1)) {
        const std::size_t end = at + flag.size();
        if ((at == 0 || isWhiteSpace(line[at - 1])) && end < line.size() && isWhiteSpace(line[end])) {
            if (const std::optional<std::string> value = accept(line.substr(end + 1))) {
                return value;
            }
        }
    }
    return std::nullopt;
}

std::optional<std::string> acceptNumber(const std::string& rest) {
    const std::size_t length = std::min(rest.find_first_not_of("0123456789"), rest.size());
    const bool isWhole = length > 0 && (length == rest.size() || isWhiteSpace(rest[length]));
    return isWhole ? std::optional(rest.substr(0, length)) : std::nullopt;
}

std::optional<std::string> acceptPath(const std::string& rest) {
    return rest.substr(0, rest.find_first_of("\r\n"));
}

struct Count {
    const char* flag;
    const char* name;
    std::uint64_t* variable;
    std::uint64_t expected;
};

void checkCommandLine(const std::string& line) {
    Count counts[] = {
        {"-nw", "NumberOfIntervalsForWarming", &NumberOfIntervalsForWarming, 120},
        {"-nt", "NumberOfIntervalsForTracking", &NumberOfIntervalsForTracking, 30},
        {"-nn", "NumberOfIntervalsForNotTracking", &NumberOfIntervalsForNotTracking, 120},
        {"-nv", "NumberOfTrackingIntervalsToBeValid", &NumberOfTrackingIntervalsToBeValid, 120},
    };
    for (Count& count : counts) {
        *count.variable = count.expected;
    }
    fpsOverride.reset();
    logToFile.reset();

    std::string log;
    bool isOutOfRange = false;
    const auto expectNumber = [&](const char* flag, const char* name) -> std::optional<std::uint64_t> {
        if (isOutOfRange) {
            return std::nullopt;
        }
        log += std::string("Brisk : looking for command line parameter ") + flag + " (" + name + ")\n";
        const auto value = findValue(line, flag, acceptNumber);
        if (!value) {
            return std::nullopt;
        }
        log += std::string("Brisk : set ") + name + " to " + *value + '\n';
        std::uint64_t number = 0;
        for (const char digit : *value) {
            number = number * 10 + static_cast<std::uint64_t>(digit - '0');
            isOutOfRange = isOutOfRange || number > kMaximum;
        }
        return isOutOfRange ? std::nullopt : std::optional(number);
    };
    for (Count& count : counts) {
        count.expected = expectNumber(count.flag, count.name).value_or(count.expected);
    }
    const auto expectedFps = expectNumber("-fps", "fpsOverride");
    std::optional<std::string> expectedPath;
    if (!isOutOfRange) {
        log += "Brisk : looking for command line parameter -log (logToFile)\n";
        expectedPath = findValue(line, "-log", acceptPath);
        log += expectedPath ? "Brisk : set logToFile to " + *expectedPath + '\n' : "";
    }

    bool hasThrown = false;
    try {
        parseParameters(line);
    } catch (const std::out_of_range& error) {
        hasThrown = true;
        fuzzing::requireEqual<std::string>(error.what(), "stoi argument out of range", "the error's text");
    }
    fuzzing::requireEqual(hasThrown, isOutOfRange, "a number out of range");
    fuzzing::requireLog(log);
    for (const Count& count : counts) {
        fuzzing::requireEqual(*count.variable, count.expected, count.name);
    }
    fuzzing::requireEqual<std::int64_t>(fpsOverride ? *fpsOverride : -1,
                                        expectedFps ? static_cast<std::int64_t>(*expectedFps) : -1, "fpsOverride");
    fuzzing::require(logToFile == expectedPath, "logToFile");
}

} // namespace
} // namespace brisk

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // The standard library's regular expressions recurse for every character. WinMain's command line ends at a NUL.
    constexpr std::size_t kMaximumLength = 1024;
    const std::string_view line = brisk::fuzzing::toText(data, std::min(size, kMaximumLength));
    brisk::checkCommandLine(std::string(line.substr(0, line.find('\0'))));
    return 0;
}
