#pragma once

#include <string>
#include <vector>

namespace brisk::workbench {

struct PreviewOptions {
    std::string database;
    std::vector<std::string> titles; // binary or display names; none: all
    std::string file;
    std::string registry; // an exported registry file
    std::string profile;
    std::string gameFolder;
    std::string display; // "WxH"; empty for the machine's own where its files are looked at, otherwise 1920x1080
    std::string lower;   // "WxH", "none" or, for the usual one of the display, empty
    bool isMatrix = false;
    std::string output;
    std::string format = "text"; // text or json
    bool hasColours = false;
};

// Prints what the service would do; the exit code: 0 nothing to complain of, 1 errors or warnings, 2 wrong usage or
// unreadable input. Writes nothing but `output`.
int runPreview(const PreviewOptions& options);

} // namespace brisk::workbench
