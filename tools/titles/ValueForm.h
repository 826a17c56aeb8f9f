#pragma once

#include "tools/titles/SettingPlace.h"

#include <optional>
#include <string>
#include <string_view>

namespace brisk::workbench {

enum class ValueKind {
    number,   // digits, with a sign: the service can compare and write it as a number
    fraction, // a number with a point: a text for the service
    word,     // true, Off, yes
    text,
};

ValueKind kindOf(std::string_view value);

// An expression for the values that a setting may have at a place: for this one, and for what else games write there.
std::string valueGroup(const SettingPlace& place, std::string_view value, ValueKind kind, const std::string& before);

// Whether a setting of this name is the screen's width or height.
enum class Dimension { width, height };
std::optional<Dimension> dimensionOf(std::string_view name);

// Whether a setting of this name may hold both: "1920x1080".
bool isScreenName(std::string_view name);

} // namespace brisk::workbench
