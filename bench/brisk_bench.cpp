#include "base/Log.h"
#include "bench/Measurement.h"
#include "bench/Rows.h"

#include <string_view>

// Measures the claims of speed and prints one table; with --growth, how the cost grows with the size (scripts/bench).
int main(int count, char** arguments) {
    using namespace brisk::bench;

    brisk::processLog.setDestination([](const std::string& /*line*/) {});
    if (count == 2 && std::string_view(arguments[1]) == "--growth") {
        printGrowthHead();
        printGrowthRows();
        return 0;
    }
    printHead();
    printMemoryRows();
    printTitleRows();
    printSettingsRows();
#ifdef _WIN32
    printBulkRows();
#endif
    printPatternRows();
}
