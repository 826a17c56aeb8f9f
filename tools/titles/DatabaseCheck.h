#pragma once

#include "tools/titles/Finding.h"
#include "tools/titles/SourceText.h"

#include <cstddef>
#include <functional>

namespace brisk::workbench {

struct DatabaseCheck {
    Findings findings; // in the order of their places
    std::size_t titles = 0;
};

// All rules for a title database, without a game. Any text ends in findings: nothing is thrown but std::bad_alloc.
// `onProgress` hears how many bytes were looked at; it may be empty.
DatabaseCheck checkDatabase(const SourceText& database, const std::function<void(std::size_t)>& onProgress = {});

} // namespace brisk::workbench
