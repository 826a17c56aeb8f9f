#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace brisk::bench {

using Work = std::function<void()>;

// What a row of the table promises about product and reference.
struct Bar {
    enum class Kind {
        AtMost,     // times the reference's cost
        TimesAsFast // as the reference, at least
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

// Prints the head of the table of growth.
void printGrowthHead();

// Prints how the CPU seconds that secondsAt answers grow with the size: the exponent, which is 1 where twice the size
// costs twice the time, from the line that fits the logarithms best, and whether it is 1.1 at most.
void printGrowth(const std::string& what, const std::vector<std::size_t>& sizes,
                 const std::function<double(std::size_t size)>& secondsAt);

} // namespace brisk::bench
