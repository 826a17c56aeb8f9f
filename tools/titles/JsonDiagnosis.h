#pragma once

#include "tools/titles/JsonFault.h"

#include <string_view>

namespace brisk::workbench {

// Where reading a JSON text stood when it failed.
struct JsonPosition {
    std::size_t cursor; // behind the last key, value, opening or closing bracket that was read
    bool isAfterKey;    // the last one was a key
    char container;     // '{', '[' or, outside of both, 0
    std::size_t containerBegin;
    bool isAfterRoot; // the one value of the text was read whole
};

// Names the fault at the place where it is made, which need not be where reading failed: a missing comma stands behind
// the element that lacks it.
JsonFault diagnoseJson(std::string_view text, const JsonPosition& position);

} // namespace brisk::workbench
