#pragma once

#include <array>

namespace brisk {

// A run-time parameter of the command line: its flag, its name in the log, and the pattern whose third group is its
// value.
struct ParameterPattern {
    const char* flag;
    const char* name;
    const char* pattern;
};

// In the order in which they are looked for. That -log takes the rest of the line, quotes included, is a promise
// (docs/decisions/kept-behaviour.md).
inline constexpr std::array kParameterPatterns{
    ParameterPattern{"-nw", "NumberOfIntervalsForWarming", R"((\s|^)(-nw)\s(\d+)(\s|$))"},
    ParameterPattern{"-nt", "NumberOfIntervalsForTracking", R"((\s|^)(-nt)\s(\d+)(\s|$))"},
    ParameterPattern{"-nn", "NumberOfIntervalsForNotTracking", R"((\s|^)(-nn)\s(\d+)(\s|$))"},
    ParameterPattern{"-nv", "NumberOfTrackingIntervalsToBeValid", R"((\s|^)(-nv)\s(\d+)(\s|$))"},
    ParameterPattern{"-fps", "fpsOverride", R"((\s|^)(-fps)\s(\d+)(\s|$))"},
    ParameterPattern{"-log", "logToFile", R"((\s|^)(-log)\s(.*)(\s|$))"},
};

} // namespace brisk
