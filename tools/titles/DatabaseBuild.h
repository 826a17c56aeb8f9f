#pragma once

#include "tools/titles/Finding.h"
#include "tools/titles/SourceText.h"

#include <string>
#include <utility>
#include <vector>

namespace brisk::workbench {

// What came of merging titles.
struct DatabaseBuild {
    std::vector<std::pair<std::size_t, Finding>> findings; // with the number of the source that each is about
    std::string database;
    std::size_t titles = 0;
};

// Merges files that hold a title, alone or as the only one of an array, into a database in the byte order of their
// binary names. The same titles give the same bytes, whatever their files' layout and order. Finds what `check` finds
// in each of them and titles that exclude each other.
DatabaseBuild buildDatabase(const std::vector<SourceText>& sources);

} // namespace brisk::workbench
