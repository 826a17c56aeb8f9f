#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace brisk::logbook {

// Reading what varies in a line. What cannot be read is nothing: a log may be cut anywhere.

// The number that the text begins with, decimal or hexadecimal behind 0x.
std::optional<std::uint64_t> readNumber(std::string_view text);

// The same behind some words that stand anywhere in the text.
std::optional<std::uint64_t> readNumberBehind(std::string_view text, std::string_view words);

// As the C++ library writes it, "nan" and "inf" included.
std::optional<double> readReal(std::string_view text);

// The text before the words; the whole text where they are not there.
std::string_view before(std::string_view text, std::string_view words);
// The text behind the words' last place; empty where they are not there.
std::string_view behindLast(std::string_view text, std::string_view words);

} // namespace brisk::logbook
