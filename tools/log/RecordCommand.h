#pragma once

#include <string>
#include <vector>

namespace brisk::logbook {

struct RecordOptions {
    std::string output;               // a file; empty: the standard output
    std::vector<std::string> command; // the service with its arguments; empty: the running one
};

// Records what the service writes to the debugger output until it ends. The exit code: 0 recorded, 2 not possible.
int runRecord(const RecordOptions& options);

} // namespace brisk::logbook
