#pragma once

#include "tools/titles/Finding.h"
#include "tools/titles/SourceText.h"

#include <cstddef>

namespace brisk::workbench {

struct DatabaseCheck {
    Findings findings; // in the order of their places
    std::size_t titles = 0;
};

// All rules for a title database, without a game. Any text ends in findings: nothing is thrown but std::bad_alloc.
DatabaseCheck checkDatabase(const SourceText& database);

} // namespace brisk::workbench
