#include "base/RunTimeParameters.h"

#include "base/Log.h"
#include "base/ParameterPatterns.h"
#include "base/StandardErrors.h"
#include "pattern/SettingPattern.h"

#include <array>
#include <cstddef>
#include <variant>

namespace brisk {

std::uint64_t NumberOfIntervalsForWarming = 120;
std::uint64_t NumberOfIntervalsForTracking = 30;
std::uint64_t NumberOfIntervalsForNotTracking = 120;
std::uint64_t NumberOfTrackingIntervalsToBeValid = 120;
std::optional<std::int32_t> fpsOverride;
std::optional<std::string> logToFile;

namespace {

using Variable = std::variant<std::uint64_t*, std::optional<std::int32_t>*, std::optional<std::string>*>;

// In the order of the patterns.
constexpr std::array<Variable, kParameterPatterns.size()> kVariables{&NumberOfIntervalsForWarming,
                                                                     &NumberOfIntervalsForTracking,
                                                                     &NumberOfIntervalsForNotTracking,
                                                                     &NumberOfTrackingIntervalsToBeValid,
                                                                     &fpsOverride,
                                                                     &logToFile};

void store(std::uint64_t& count, const std::string& value) {
    count = static_cast<std::uint64_t>(stringToInt(value));
}
void store(std::optional<std::int32_t>& number, const std::string& value) {
    number = stringToInt(value);
}
void store(std::optional<std::string>& text, const std::string& value) {
    text = value;
}

} // namespace

void parseParameters(const std::string& commandLine) {
    for (std::size_t index = 0; index < kParameterPatterns.size(); ++index) {
        const ParameterPattern& parameter = kParameterPatterns[index];
        logLine("Brisk : looking for command line parameter ", parameter.flag, " (", parameter.name, ")");
        const auto match = SettingPattern(parameter.pattern).search(commandLine);
        if (!match) {
            continue;
        }
        const std::string value((*match)[3]);
        logLine("Brisk : set ", parameter.name, " to ", value);
        std::visit([&value](auto* variable) { store(*variable, value); }, kVariables[index]);
    }
}

} // namespace brisk
