#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace brisk::logbook {

inline constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";

// The length of the character of UTF-8 that the text, which is not empty, begins with; 0 where it is none that XML has.
std::size_t characterLength(std::string_view text);

// The text as content or attribute of a page that is HTML and XML at once. Bytes that are no UTF-8, and characters that
// XML does not have, become the replacement character.
std::string escape(std::string_view text);

// A number with at most two digits behind the point.
std::string shortNumber(double number);

} // namespace brisk::logbook
