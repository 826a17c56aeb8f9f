#include "tools/titles/InputFile.h"

#include "tools/console/Files.h"
#include "tools/titles/RegistryExport.h"

#include <optional>
#include <stdexcept>
#include <utility>

namespace brisk::workbench {

std::string readInput(const std::string& path) {
    if (std::optional<std::string> bytes = readFile(path)) {
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
