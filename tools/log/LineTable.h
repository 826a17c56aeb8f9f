#pragma once

#include "tools/log/LineKind.h"

#include <string_view>

namespace brisk::logbook {

struct Classified {
    LineKind kind = LineKind::Unknown;
    std::string_view value; // what stands behind the kind's fixed words
};

// The kind of a message, which is a line without "Brisk : " and line end.
Classified classify(std::string_view message);

// Whether the text is the front of a line whose words are known: what a line is that was cut.
bool mayBeCut(std::string_view message);

} // namespace brisk::logbook
