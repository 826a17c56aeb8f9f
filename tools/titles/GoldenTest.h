#pragma once

#include "tools/titles/GoldenCase.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace brisk::workbench {

// What running a golden case came to.
struct GoldenResult {
    std::string title; // the title's folder, as it was given
    std::string name;  // the case's; "" where it is the title itself that cannot be read
    std::string expectation;
    std::string verdict;               // what the service would make of it
    std::vector<std::string> failures; // what is not as expected, a sentence each
    std::string diff;                  // of the files that are not as expected, or that were accepted
    bool isUnreadable = false;
    bool isAccepted = false; // what came out was written
};

// What the real service makes of a case, as a sentence that says where it is not what is previewed; nothing when both
// agree.
using ServiceTrial = std::function<std::optional<std::string>(const SourceText& titleFile, const GoldenCase& golden)>;

struct GoldenOptions {
    bool accepts = false; // writes what comes out where it is not what is expected
    ServiceTrial service; // may be empty
};

// Runs all cases of the title's folder, in the order of their names: each is previewed, and its verdict, the bytes of
// its files and that it settles are compared. Nothing is thrown.
std::vector<GoldenResult> runGoldenCases(const std::string& titleFolder, const GoldenOptions& options);

} // namespace brisk::workbench
