#pragma once

#include <optional>
#include <string>

namespace brisk::workbench {

// What is tried without a game's file: with the service's own functions, on a small text that is made up from the
// expressions themselves.

struct WantedValue {
    std::string text; // as it is written
    bool isNumber;    // read and compared as a number
};

// Sets the value where the key finds one and looks for it again. Nothing when it is found, or when no text could be
// made up that the key finds anything in; otherwise what is found instead, in words.
std::optional<std::string> tryWriting(const std::string& key, const WantedValue& wanted);

// Creates the setting at its place and looks for it with its own key. The place has a line behind it; what the key
// needs in front of the setting may stand in front of the place. Nothing and words as above.
std::optional<std::string> tryCreation(const std::string& key, const WantedValue& wanted, const std::string& createKey,
                                       const std::string& createValue);

} // namespace brisk::workbench
