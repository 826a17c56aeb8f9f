#pragma once

#include <stdexcept>

namespace brisk::workbench {

// What the user has to change: exit code 2.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace brisk::workbench
