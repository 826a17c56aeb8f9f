#pragma once

#include "tools/titles/Finding.h"
#include "tools/titles/Preview.h"

#include <string>
#include <vector>

namespace brisk::workbench {

// What is wrong with a title together with a settings file.
struct PreviewFinding {
    Finding finding; // its place is in TitlePreview::text ...
    bool isInDatabase = false;
    std::string fieldKey; // ... or, if it is in the database, at this key of a field or condition
};

std::vector<PreviewFinding> findFaults(const TitlePreview& preview);

} // namespace brisk::workbench
