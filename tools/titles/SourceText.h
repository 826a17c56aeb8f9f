#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace brisk::workbench {

// A place in a text, counted from 1; columns are characters (UTF-8), a byte that is none counts as one.
struct Place {
    std::size_t line = 1;
    std::size_t column = 1;
};

// A file's text and where its lines begin. Offsets are bytes from 0.
class SourceText {
public:
    // The path is printed as it was given.
    SourceText(std::string path, std::string bytes);

    const std::string& path() const { return givenPath; }
    std::string_view text() const { return content; }
    Place placeOf(std::size_t offset) const;
    // The line's text without its end; lines count from 1.
    std::string_view line(std::size_t number) const;

private:
    std::string givenPath;
    std::string content;
    // How many characters begin before an offset.
    std::size_t charactersBefore(std::size_t offset) const;

    std::vector<std::size_t> lineBegins;
    // Before each block of bytes: a database may be a single line, and a place in it is asked for with every finding.
    std::vector<std::size_t> charactersBeforeBlock;
};

// How many characters of UTF-8 begin in the text.
std::size_t countCharacters(std::string_view text);

} // namespace brisk::workbench
