#include "tools/console/Files.h"

#include <fstream>
#include <utility>

namespace brisk {

std::optional<std::string> readFile(const std::string& path) {
    const std::filesystem::path file = fromUtf8(path);
    std::error_code error;
    // A folder can be opened on some systems.
    if (std::filesystem::is_directory(file, error)) {
        return std::nullopt;
    }
    std::ifstream stream(file, std::ios::binary);
    std::string bytes;
    char block[65536];
    while (stream.read(block, sizeof block), stream.gcount() > 0) {
        bytes.append(block, static_cast<std::size_t>(stream.gcount()));
    }
    return stream.is_open() && !stream.bad() ? std::optional(std::move(bytes)) : std::nullopt;
}

} // namespace brisk
