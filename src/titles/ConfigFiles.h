#pragma once

#include <string>

namespace brisk {

// Where locations of text files lie on this machine.

// Replaces the first "*" by the name of the first subdirectory, in the file system's order, of the directory before it,
// in place. There is no pattern matching. False when the text before the star is no directory; a directory without
// subdirectories leaves the star in place. Throws std::filesystem::filesystem_error when the file system fails.
bool resolveWildcard(std::string& location);

// Whether a file or directory of that name exists. Throws std::filesystem::filesystem_error ("exists") when the file
// system fails otherwise than by absence.
bool locationExists(const std::string& location);

} // namespace brisk
