#pragma once

#include <string>

namespace brisk::workbench {

struct KeyOptions {
    std::string file;  // FILE:LINE, or FILE with an expression
    std::string value; // what the setting is, or is to be
    std::string expression;
    bool hasValue = false;
    bool isRaw = false;
    std::string format = "text"; // text or json
};

// Prints keys for the settings of a line, or what an expression matches; the exit code: 0, or 1 where there is no key,
// or not exactly one match, or something wrong with the expression. Throws std::runtime_error for what cannot be read.
int runKey(const KeyOptions& options);

} // namespace brisk::workbench
