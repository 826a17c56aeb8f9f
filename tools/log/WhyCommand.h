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

// Exit codes of `why`.
inline constexpr int kOffered = 0;
inline constexpr int kNotOffered = 1;
inline constexpr int kUnreadable = 2;
inline constexpr int kNoSession = 3;

// Prints a verdict for every game of the logs; the exit code.
int runWhy(const WhyOptions& options);

} // namespace brisk::logbook
