#pragma once

#include <string>
#include <vector>

namespace brisk::workbench {

struct CheckOptions {
    std::vector<std::string> databases;
    std::vector<std::string> disabledRules;
    std::string format = "text"; // text, json, github or sarif
    bool isStrict = false;       // warnings count as complaints
    bool hasColours = false;
};

// Prints what is wrong with the databases; the exit code: 0 nothing to complain of, 1 findings, 2 unreadable.
int runCheck(const CheckOptions& options);

} // namespace brisk::workbench
