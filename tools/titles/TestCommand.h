#pragma once

#include <string>

namespace brisk::workbench {

struct TestOptions {
    std::string folder;
    bool accepts = false;
    std::string junit;           // receives the results; may be empty
    std::string service;         // brisk.exe, which is to come to the same; may be empty
    std::string format = "text"; // text or json
    bool hasColours = false;
};

// Runs the golden cases of all titles in the folder; the exit code: 0 all are as expected or accepted, 1 some are not,
// 2 wrong usage or unreadable input.
int runTest(const TestOptions& options);

} // namespace brisk::workbench
