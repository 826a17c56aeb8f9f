#pragma once

#include <functional>
#include <string>

namespace brisk::bench {

using Work = std::function<void()>;

// What a row of the table promises about product and reference.
struct Bar {
    enum class Kind {
        atMost,     // times the reference's cost
        timesAsFast // as the reference, at least
    };
    Kind kind;
    double limit;
};

// Prints the table's head.
void printHead();

// Measures the CPU time of this thread that both take, in turn, so that what else the machine does hits both alike, and
// prints a row: the medians, the ratio with its quartiles, the bar and whether it is met.
void compare(const std::string& work, const Work& product, const std::string& referenceName, const Work& reference,
             Bar bar);

// A row of figures measured elsewhere, for example bytes.
void printFigures(const std::string& work, double product, const std::string& referenceName, double reference,
                  const std::string& unit, Bar bar);

// CPU seconds of one call: the median of some.
double secondsOf(const Work& work);

} // namespace brisk::bench
