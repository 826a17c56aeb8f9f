#pragma once

#include "titles/ConfigLocation.h"
#include "tools/titles/TextPreviewAdapter.h"

#include <string>

namespace brisk::workbench {

// Text files as they lie in folders that stand for the player's ones. Only read from.

// %USERPROFILE% and what lies below it.
UserFolders userFoldersIn(const std::string& profile);

// Locations below the profile or the game's folder; both may be empty. Letter case does not matter, as on Windows, and
// both slashes part names. What lies elsewhere is not there. The first folder that "*" stands for is the first one by
// name, whatever the letter case.
FileSource filesIn(const std::string& profile, const std::string& gameFolder);

// A single file that stands for the title's one, whatever its locations.
FileSource fileAt(const std::string& location, const std::string& bytes);

} // namespace brisk::workbench
