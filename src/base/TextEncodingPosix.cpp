#include "base/TextEncoding.h"

namespace brisk {

// Narrow text is what the system's calls take.
std::filesystem::path toPath(const std::string& narrow) {
    return narrow;
}

} // namespace brisk
