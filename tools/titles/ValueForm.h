#pragma once

#include "tools/titles/SettingPlace.h"

#include <optional>
#include <string>
#include <string_view>

namespace brisk::workbench {

enum class ValueKind {
    Number,   // digits, with a sign: the service can compare and write it as a number
    Fraction, // a number with a point: a text for the service
    Word,     // true, Off, yes
    Text,
};

ValueKind kindOf(std::string_view value);

// An expression for the values that a setting may have at a place: for this one, and for what else games write there.
std::string valueGroup(const SettingPlace& place, std::string_view value, ValueKind kind, const std::string& before);

// Whether a setting of this name is the screen's width or height.
enum class Dimension { Width, Height };
std::optional<Dimension> dimensionOf(std::string_view name);

// Whether a setting of this name may hold both: "1920x1080".
bool isScreenName(std::string_view name);

} // namespace brisk::workbench
