#include "tools/titles/InputFile.h"

#include "base/TextEncoding.h"
#include "tools/titles/RegistryExport.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <utility>

namespace brisk::workbench {

std::optional<std::string> readInputFile(const std::string& path) {
    const std::filesystem::path file = toPath(path);
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

std::string readInput(const std::string& path) {
    if (std::optional<std::string> bytes = readInputFile(path)) {
        return std::move(*bytes);
    }
    throw std::runtime_error("cannot read " + path);
}

std::string readSettingsFile(const std::string& path) {
    std::string bytes = readInput(path);
    if (readRegistryExport(bytes)) {
        throw std::runtime_error(path + " is an exported registry: a registry title has no expressions, its \"key\" is "
                                        "the name of a value");
    }
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) {
        throw std::runtime_error(path + " is UTF-16, in which the service finds no setting");
    }
    return bytes;
}

} // namespace brisk::workbench
