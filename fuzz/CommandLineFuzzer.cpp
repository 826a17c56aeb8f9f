#include "fuzz/Fuzzing.h"
#include "support/ExpectedParameters.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

// The command line, read a second time without regular expressions.

namespace brisk {
namespace {

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";
constexpr std::uint64_t kMaximum = 2147483647;

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

void checkCommandLine(const std::string& line) {
    testing::resetParameters();

    std::map<std::string, std::string> values;
    std::string tooLarge;
    const auto expectNumber = [&](const char* flag) -> std::optional<std::uint64_t> {
        const auto value = tooLarge.empty() ? findValue(line, flag, acceptNumber) : std::nullopt;
        if (!value) {
            return std::nullopt;
        }
        values[flag] = *value;
        std::uint64_t number = 0;
        for (const char digit : *value) {
            number = number * 10 + static_cast<std::uint64_t>(digit - '0');
            if (number > kMaximum) {
                tooLarge = flag;
                return std::nullopt;
            }
        }
        return number;
    };
    std::vector<std::uint64_t> expectedCounts;
    for (const auto& [flag, name, variable, byDefault] : testing::kCountParameters) {
        expectedCounts.push_back(expectNumber(flag).value_or(byDefault));
    }
    const auto expectedFps = expectNumber("-fps");
    const auto expectedPath = tooLarge.empty() ? findValue(line, "-log", acceptPath) : std::nullopt;
    if (expectedPath) {
        values["-log"] = *expectedPath;
    }
    std::string log;
    for (const std::string& logLine : testing::parameterLines(values, tooLarge)) {
        log += logLine + '\n';
    }

    bool hasThrown = false;
    try {
        parseParameters(line);
    } catch (const std::out_of_range& error) {
        hasThrown = true;
        fuzzing::requireEqual<std::string>(error.what(), "stoi argument out of range", "the error's text");
    }
    fuzzing::requireEqual(hasThrown, !tooLarge.empty(), "a number out of range");
    fuzzing::requireLog(log);
    for (std::size_t i = 0; i < expectedCounts.size(); ++i) {
        const auto& parameter = testing::kCountParameters[i];
        fuzzing::requireEqual(parameter.variable, expectedCounts[i], parameter.name);
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
