#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace brisk::workbench {

// A title to begin with, and what its author still has to know.
struct NewTitle { // NOLINT(bugprone-exception-escape): moving JSON allocates nothing.
    nlohmann::ordered_json title;
    std::vector<std::string> notes;
};

// Where the title comes from: absolute paths and the files' bytes. An empty path: not given.
struct NewTitleSources {
    std::string executablePath;
    std::string executable;
    std::string settingsPath;
    std::string settings;
};

// Throws ExecutableError where the executable is none.
NewTitle makeTitle(const NewTitleSources& sources);

} // namespace brisk::workbench
