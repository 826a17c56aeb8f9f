#pragma once

#include "tools/log/LineKind.h"

#include <string_view>

namespace brisk::logbook {

struct Classified {
    LineKind kind = LineKind::Unknown;
    std::string_view value; // what stands behind the kind's fixed words
    bool isOpen = false;    // more of the value may follow, were the message cut
};

// The kind of a message, which is a line without "Brisk : ", line end, and blanks in front of that.
Classified classify(std::string_view message);

// Whether the text is the front of a line whose words are known: what a line is that was cut.
bool mayBeCut(std::string_view message);

// Whether a word, given in small letters, is one of the lines' fixed words.
bool isOfFixedWords(std::string_view word);

} // namespace brisk::logbook
