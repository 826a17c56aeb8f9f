#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace brisk::workbench {

// An expression that matches exactly this text. It is ASCII, whatever the text is.
std::string escapePattern(std::string_view text);

// An expression for blanks of the kind that stand there, any number of them; nothing where none do.
std::string blanksLike(std::string_view blanks);

std::string_view trimmed(std::string_view text);

// The bytes of a byte-order mark at the text's beginning.
std::size_t markSize(std::string_view text);

} // namespace brisk::workbench
