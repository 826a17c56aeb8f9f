#pragma once

#include <cstddef>
#include <string_view>

namespace brisk::fuzzing {

// Which patterns std::regex can be the measure for. Its own faults and the places where we keep to the standard instead
// are steered around (see docs/decisions/setting-patterns.md), by what stands in the pattern rather than by what it
// means: a pattern too many is left out now and then.

// The quantifiers and alternatives of a pattern, roughly: the more there are, the faster backtracking grows.
std::size_t countChoices(std::string_view pattern);

// Whether the standard library accepts and rejects the pattern for the same reasons as we do.
bool isStandardMeasure(std::string_view pattern);

// Whether a search for a pattern that it accepts can be compared, and ends in time.
bool canStandardSearch(std::string_view pattern, std::string_view text);

// Whether replacing can be compared as well.
bool canStandardReplace(std::string_view pattern);

} // namespace brisk::fuzzing
