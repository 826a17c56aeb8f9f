#pragma once

#include "tools/log/Selection.h"

#include <string>
#include <vector>

namespace brisk::logbook {

struct WhyOptions {
    std::vector<std::string> logs;
    Selection selection;
    bool isLastOnly = false;
    std::string database; // a path; empty: none
    bool redacts = false;
    std::string format = "text"; // text or json
    bool hasColours = false;
};

// Prints a verdict for every game of the logs; the exit code (ExitCodes.h).
int runWhy(const WhyOptions& options);

} // namespace brisk::logbook
