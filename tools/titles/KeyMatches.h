#pragma once

#include "tools/titles/SourceText.h"

#include <ostream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace brisk::workbench {

// A part of a text: what a match, or one of its groups, holds.
struct MatchPart {
    std::size_t begin;
    std::size_t end;
};

// The places of one match: all of it, then each group.
using MatchPlaces = std::vector<MatchPart>;

struct FoundMatches {
    std::size_t count = 0;
    std::vector<MatchPlaces> first; // not more than a hundred
};

// Everything that an expression matches when the service writes. Throws std::regex_error.
FoundMatches findMatches(const std::string& expression, std::string_view text);

// The match and the lines that it touches, with a digit below each character for the group that holds it and '~' where
// none does.
void printMatch(std::ostream& out, const SourceText& source, const MatchPlaces& match, std::size_t number);

nlohmann::ordered_json toJson(const SourceText& source, const MatchPlaces& match);

} // namespace brisk::workbench
