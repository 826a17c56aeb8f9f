#pragma once

#include <cstddef>
#include <string>

// The rows of the table, by what they are about.

namespace brisk::bench {

void printPatternRows();

// A settings text of at least so many bytes and half as many hundreds of lines, with each of the sections, attributes
// and members that the keys of the table ask for near its end.
std::string settingsText(std::size_t bytes);

} // namespace brisk::bench
