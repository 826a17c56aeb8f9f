#pragma once

#include "tools/titles/SettingPlace.h"
#include "tools/titles/ValueForm.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

namespace brisk::workbench {

// A key for a setting in a game's text, and what its author should know.
struct KeyProposal { // NOLINT(bugprone-exception-escape): moving JSON allocates nothing.
    std::string name;
    std::size_t begin = 0; // of the value, bytes of the text as the service reads it
    std::string value;
    std::string key;
    nlohmann::ordered_json field; // for "config_fields"
    std::vector<std::string> notes;
};

// A key that the service's own search finds once in the text, with this value in its second group, that finds the
// setting again once it has the wanted value, and of which `check` has nothing to say. Nothing where there is none. No
// wanted value: the resolution where the name is one of the screen's dimensions, otherwise the value that it has.
std::optional<KeyProposal> proposeKey(const std::string& text, const SettingPlace& place,
                                      const std::optional<std::string>& wanted);

// The parts of a setting's value that are settings themselves: 1920 and 1080 in "1920x1080" and in "(X=1920,Y=1080)".
std::vector<SettingPlace> partsOf(std::string_view text, const SettingPlace& place);

} // namespace brisk::workbench
