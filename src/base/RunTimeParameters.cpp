#include "base/RunTimeParameters.h"

#include "base/Log.h"
#include "base/StandardErrors.h"
#include "pattern/SettingPattern.h"

#include <array>
#include <variant>

namespace brisk {

std::uint64_t NumberOfIntervalsForWarming = 120;
std::uint64_t NumberOfIntervalsForTracking = 30;
std::uint64_t NumberOfIntervalsForNotTracking = 120;
std::uint64_t NumberOfTrackingIntervalsToBeValid = 120;
std::optional<std::int32_t> fpsOverride;
std::optional<std::string> logToFile;

namespace {

struct Parameter {
    const char* flag;
    const char* name;
    const char* pattern;
    std::variant<std::uint64_t*, std::optional<std::int32_t>*, std::optional<std::string>*> variable;
};

// That -log takes the rest of the line, quotes included, is a promise (docs/decisions/kept-behaviour.md).
const std::array<Parameter, 6>& parameterTable() {
    static const std::array<Parameter, 6> table{{
        {"-nw", "NumberOfIntervalsForWarming", R"((\s|^)(-nw)\s(\d+)(\s|$))", &NumberOfIntervalsForWarming},
        {"-nt", "NumberOfIntervalsForTracking", R"((\s|^)(-nt)\s(\d+)(\s|$))", &NumberOfIntervalsForTracking},
        {"-nn", "NumberOfIntervalsForNotTracking", R"((\s|^)(-nn)\s(\d+)(\s|$))", &NumberOfIntervalsForNotTracking},
        {"-nv", "NumberOfTrackingIntervalsToBeValid", R"((\s|^)(-nv)\s(\d+)(\s|$))",
         &NumberOfTrackingIntervalsToBeValid},
        {"-fps", "fpsOverride", R"((\s|^)(-fps)\s(\d+)(\s|$))", &fpsOverride},
        {"-log", "logToFile", R"((\s|^)(-log)\s(.*)(\s|$))", &logToFile},
    }};
    return table;
}

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
    for (const Parameter& parameter : parameterTable()) {
        logLine("Brisk : looking for command line parameter ", parameter.flag, " (", parameter.name, ")");
        const auto match = SettingPattern(parameter.pattern).search(commandLine);
        if (!match) {
            continue;
        }
        const std::string value((*match)[3]);
        logLine("Brisk : set ", parameter.name, " to ", value);
        std::visit([&value](auto* variable) { store(*variable, value); }, parameter.variable);
    }
}

} // namespace brisk
