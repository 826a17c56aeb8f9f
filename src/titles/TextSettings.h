#pragma once

#include <cstdint>
#include <string>

namespace brisk {

// The settings of a configuration text held in memory, of whatever format. A setting's key is an ECMAScript regular
// expression of three groups: the text before the value, the value, the text after it. An invalid expression, or a
// search that is given up, leaves every function as std::regex_error.

// Group 2 of the first match before the first NUL; empty when the expression has no such group, the default when
// nothing matches.
std::string getTextValue(const std::string& content, const std::string& key, const std::string& defaultText);

// The same as a number. Throws std::invalid_argument or std::out_of_range when the value is no 32-bit number.
std::int32_t getTextNumber(const std::string& content, const std::string& key, std::int32_t defaultNumber);

// Replaces the value of every match. The text is subject to the rules of std::regex_replace's format.
void setTextValue(std::string& content, const std::string& key, const std::string& text);

} // namespace brisk
