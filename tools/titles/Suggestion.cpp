#include "tools/titles/Suggestion.h"

#include "tools/titles/AsciiText.h"

#include <algorithm>
#include <vector>

namespace brisk::workbench {

namespace {

// How many letters must be put in, taken away, replaced or swapped with their neighbour (Damerau and Levenshtein,
// without repeated edits of one place).
std::size_t distance(std::string_view one, std::string_view other) {
    std::vector<std::vector<std::size_t>> cost(one.size() + 1, std::vector<std::size_t>(other.size() + 1));
    for (std::size_t i = 0; i <= one.size(); ++i) {
        for (std::size_t j = 0; j <= other.size(); ++j) {
            if (i == 0 || j == 0) {
                cost[i][j] = i + j;
                continue;
            }
            cost[i][j] = std::min(
                {cost[i - 1][j] + 1, cost[i][j - 1] + 1, cost[i - 1][j - 1] + (one[i - 1] == other[j - 1] ? 0U : 1U)});
            if (i > 1 && j > 1 && one[i - 1] == other[j - 2] && one[i - 2] == other[j - 1]) {
                cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
            }
        }
    }
    return cost.back().back();
}

} // namespace

std::string didYouMean(std::string_view misspelt, std::span<const std::string_view> known) {
    std::string_view nearest;
    std::size_t least = std::max<std::size_t>(2, misspelt.size() / 3) + 1;
    // A name of unreasonable length is near to none.
    for (const std::string_view name : misspelt.size() <= 64 ? known : std::span<const std::string_view>()) {
        if (const std::size_t slips = distance(lowered(misspelt), lowered(name)); slips < least) {
            least = slips;
            nearest = name;
        }
    }
    return nearest.empty() ? std::string() : "; did you mean \"" + std::string(nearest) + "\"?";
}

} // namespace brisk::workbench
