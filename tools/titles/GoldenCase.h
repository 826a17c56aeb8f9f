#pragma once

#include "tools/titles/DatabaseTitles.h"
#include "tools/titles/Displays.h"
#include "tools/titles/GoldenFiles.h"
#include "tools/titles/Preview.h"
#include "tools/titles/SourceText.h"

#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

namespace brisk::workbench {

// One case of a title: a folder with case.json, the player's files before in before/ (profile/ for %USERPROFILE%,
// game/ for %APPDIR%, registry.reg), and those that the service changes as they are afterwards in after/.
struct GoldenCase {
    std::string name; // of the folder
    std::string folder;
    nlohmann::ordered_json description; // case.json
    Display display = displayOf({1920, 1080});
    std::string expectation; // a Verdict's name; "" when it is not said
    GoldenFiles before;
    GoldenFiles after;
};

// What may be expected: "adjusted", "untouched", "condition", "not-found", "no-resolution".
const std::vector<std::string_view>& expectations();

// Throws std::runtime_error when something cannot be read or is not understood. `mayBeNew`: nothing need be expected
// yet.
GoldenCase readCase(const std::string& folder, bool mayBeNew);

// The folders of the title's cases, in the order of their names.
std::vector<std::string> findCases(const std::string& titleFolder);

// title.json of a title's folder as a database: it is one, or the title alone. Throws std::runtime_error when it cannot
// be read.
SourceText readTitleFile(const std::string& titleFolder);

// The folders that hold a title.json, from `folder` on downwards, in the order of their paths; what lies in a title's
// folder is the title's.
std::vector<std::string> findTitleFolders(const std::string& folder);

// What the service would do with the case's title on a display. Throws std::runtime_error when the file holds no title,
// or several.
TitlePreview previewCase(const SourceText& titleFile, const GoldenCase& golden, const Display& display);

// The case's files after the preview's first pass.
GoldenFiles filesAfter(const GoldenCase& golden, const TitlePreview& preview);

} // namespace brisk::workbench
