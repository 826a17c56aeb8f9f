#include "bench/Measurement.h"
#include "bench/Rows.h"

// Measures the claims of speed and prints one table (scripts/bench).
int main() {
    brisk::bench::printHead();
    brisk::bench::printPatternRows();
}
