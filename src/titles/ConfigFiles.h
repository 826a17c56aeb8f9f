#pragma once

#include "titles/ConfigLocation.h"

#include <string>

namespace brisk {

// Where locations of text files lie on this machine.

// The placeholders of the user's folders, and the folders as UTF-8; one that Windows does not tell is empty.
UserFolders findUserFolders();

// Replaces the first "*" by the name of the first subdirectory, in the file system's order, of the directory before it,
// in place. There is no pattern matching. False when the text before the star is no directory; a directory without
// subdirectories leaves the star in place. Throws std::filesystem::filesystem_error when the file system fails.
bool resolveWildcard(std::string& location);

// Whether a file or directory of that name exists. Throws std::filesystem::filesystem_error ("exists") when the file
// system fails otherwise than by absence.
bool locationExists(const std::string& location);

} // namespace brisk
