#pragma once

#include <string>

namespace brisk {

// The full path of a file whose version resource has a certain shape: "complete" for complete.rc, and so on.
// Throws std::invalid_argument if there is none of that name.
std::string versionSample(const std::string& shape);

} // namespace brisk
