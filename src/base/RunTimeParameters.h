#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace brisk {

// The service's run-time parameters, process-wide. Set once by parseParameters, read everywhere; an interval is one
// tick of the tracking timer (a second).
// NOLINTBEGIN(readability-identifier-naming): the log's own names.
extern std::uint64_t NumberOfIntervalsForWarming;        // -nw
extern std::uint64_t NumberOfIntervalsForTracking;       // -nt
extern std::uint64_t NumberOfIntervalsForNotTracking;    // -nn
extern std::uint64_t NumberOfTrackingIntervalsToBeValid; // -nv: accepted samples that a judgement needs
extern std::optional<std::int32_t> fpsOverride;          // -fps: replaces the measured frame rate
extern std::optional<std::string> logToFile;             // -log: the log's file path, to the end of the command line
// NOLINTEND(readability-identifier-naming)

// Reads the parameters from the command line (without the program's own path). What is missing or malformed keeps its
// value. Throws std::out_of_range "stoi argument out of range" for a number beyond a signed 32-bit integer.
void parseParameters(const std::string& commandLine);

} // namespace brisk
