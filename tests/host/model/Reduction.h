// Running worlds in processes of their own, so that a crash is a result like any other, and making a failing sequence
// of steps short.
#pragma once

#include "host/model/Steps.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brisk::model {

struct Verdict {
    bool failed = false;
    std::size_t step = 0;
    std::string text;
};

// Runs that many worlds from the seed on in one process; the seed of the first that fails. Landmarks that were reached
// are taken from `missing`.
std::optional<std::uint64_t> runWorlds(std::uint64_t firstSeed, unsigned worlds, std::size_t steps,
                                       std::vector<std::string>& missing);

// Runs the world of the seed through the steps in a process of its own.
Verdict runAlone(std::uint64_t seed, const std::vector<Step>& steps);

// The steps without those that the failure does not need.
std::vector<Step> reduce(std::uint64_t seed, const std::vector<Step>& steps, const Verdict& verdict);

} // namespace brisk::model
