#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace brisk::workbench {

// What the text of a settings file looks like to a game, as far as that can be told without knowing the game.

// Whether the text begins with ; # // or --.
bool beginsComment(std::string_view text);

// Whether the place is inside a comment: behind ; # // -- in front of a line or, set off by blanks, behind something
// else on it, or between <!-- and --> or /* and */.
bool isInComment(std::string_view text, std::size_t place);

// The name of the setting in a line: "Mode" of "Mode=Quality", of "\"mode\": 1" and of "seta Mode \"1\"". Empty for a
// line without any, such as a comment or a section's head.
std::string nameInLine(std::string_view line);

// How many lines of the place's section, "[...]", or of the whole text where there are none, have a setting of that
// name.
std::size_t countSettings(std::string_view text, std::size_t place, std::string_view name);

} // namespace brisk::workbench
