#pragma once

#include <cstddef>
#include <regex>

namespace brisk {

// A pattern that does not follow the grammar. Everybody may catch it as a std::regex_error, whose code and text it has.
class PatternError : public std::regex_error {
public:
    PatternError(std::regex_constants::error_type code, std::size_t at) : std::regex_error(code), place(at) {}

    // Where in the pattern the fault is: the first byte that does not fit, or the opening one that is never closed; the
    // pattern's length where something is missing at its end.
    std::size_t offset() const { return place; }

private:
    std::size_t place;
};

} // namespace brisk
