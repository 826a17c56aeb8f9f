#include "support/versions/VersionSamples.h"

#include "base/TextEncoding.h"
#include "support/Places.h"

#include <stdexcept>

#include <windows.h>

namespace brisk {

std::string versionSample(const std::string& shape) {
    std::string path = toNarrow(testing::place(BRISK_VERSION_SAMPLES) / (shape + ".dll"));
    if (GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES) {
        throw std::invalid_argument("no version sample " + path);
    }
    return path;
}

} // namespace brisk
