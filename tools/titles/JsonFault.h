#pragma once

#include <cstddef>
#include <string>

namespace brisk::workbench {

// Where and why a text is no JSON.
struct JsonFault {
    std::size_t offset; // bytes
    std::string rule;
    std::string message;
};

} // namespace brisk::workbench
