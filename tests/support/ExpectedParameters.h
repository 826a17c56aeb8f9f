// The command line's parameters, told a second time: only their variables are the product's own.
#pragma once

#include "base/RunTimeParameters.h"
#include "support/TextFiles.h"

#include <map>

namespace brisk::testing {

struct CountParameter {
    const char* flag;
    const char* name;
    std::uint64_t& variable;
    std::uint64_t byDefault;
};
inline const CountParameter kCountParameters[] = {
    {"-nw", "NumberOfIntervalsForWarming", NumberOfIntervalsForWarming, 120},
    {"-nt", "NumberOfIntervalsForTracking", NumberOfIntervalsForTracking, 30},
    {"-nn", "NumberOfIntervalsForNotTracking", NumberOfIntervalsForNotTracking, 120},
    {"-nv", "NumberOfTrackingIntervalsToBeValid", NumberOfTrackingIntervalsToBeValid, 120},
};

inline void resetParameters() {
    for (const CountParameter& count : kCountParameters) {
        count.variable = count.byDefault;
    }
    fpsOverride.reset();
    logToFile.reset();
}

// A start's first lines, with the texts that the command line gives for the flags; up to the last flag where its text
// is too large a number.
inline Lines parameterLines(const std::map<std::string, std::string>& values = {}, const std::string& last = {}) {
    Lines lines;
    bool isOver = false;
    const auto add = [&](const std::string& flag, const std::string& name) {
        if (isOver) {
            return;
        }
        isOver = flag == last;
        lines.push_back("Brisk : looking for command line parameter " + flag + " (" + name + ")");
        if (const auto value = values.find(flag); value != values.end()) {
            lines.push_back("Brisk : set " + name + " to " + value->second);
        }
    };
    for (const CountParameter& count : kCountParameters) {
        add(count.flag, count.name);
    }
    add("-fps", "fpsOverride");
    add("-log", "logToFile");
    return lines;
}

} // namespace brisk::testing
