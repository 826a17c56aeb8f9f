#pragma once

#include "tools/titles/JsonReader.h"

#include <cstddef>
#include <string_view>

namespace brisk::workbench {

// Where the n-th byte of a text value's content is written in the JSON source: escapes take more room there. n may be
// the content's size: the closing quotation mark.
std::size_t placeInText(std::string_view source, const JsonValue& text, std::size_t index);

} // namespace brisk::workbench
