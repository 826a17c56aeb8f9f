#include "base/Log.h"
#include "bench/Measurement.h"
#include "bench/Rows.h"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <vector>

namespace {

using namespace brisk::bench;

struct Group {
    std::string_view name;
    void (*print)();
};

constexpr Group kGroups[] = {{"memory", printMemoryRows},     {"titles", printTitleRows},
                             {"settings", printSettingsRows}, {"ticks", printTickRows},
#ifdef _WIN32
                             {"passes", printBulkRows},
#endif
                             {"patterns", printPatternRows}};

} // namespace

// Measures the claims of speed and prints one table, of all groups of rows or of those that are named; with --growth,
// how the cost grows with the size (scripts/bench).
int main(int count, char** arguments) {
    const std::vector<std::string_view> named(arguments + 1, arguments + count);
    brisk::processLog.setDestination([](const std::string& /*line*/) {});
    if (named == std::vector<std::string_view>{"--growth"}) {
        printGrowthHead();
        printGrowthRows();
        return 0;
    }
    for (const std::string_view name : named) {
        if (std::ranges::none_of(kGroups, [&](const Group& group) { return group.name == name; })) {
            std::fprintf(stderr, "bench: there are no rows named %s\n", std::string(name).c_str());
            return 2;
        }
    }
    printHead();
    for (const Group& group : kGroups) {
        if (named.empty() || std::ranges::count(named, group.name) != 0) {
            group.print();
        }
    }
}
