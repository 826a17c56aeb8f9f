#include "base/StandardErrors.h"

#include <cerrno>
#include <cstdlib>
#include <limits>
#include <stdexcept>
#include <system_error>

namespace brisk {

std::int32_t stringToInt(const std::string& text) {
    char* end = nullptr;
    errno = 0;
    const long long number = std::strtoll(text.c_str(), &end, 10);
    if (end == text.c_str()) {
        throw std::invalid_argument("invalid stoi argument");
    }
    if (errno == ERANGE || number < std::numeric_limits<std::int32_t>::min() ||
        number > std::numeric_limits<std::int32_t>::max()) {
        throw std::out_of_range("stoi argument out of range");
    }
    return static_cast<std::int32_t>(number);
}

void throwInvalidVectorSubscript() {
    throw std::out_of_range("invalid vector subscript");
}

void throwFileSystemError(const char* operation, const std::filesystem::path& path, unsigned long windowsError) {
    throw std::filesystem::filesystem_error(operation, path, {static_cast<int>(windowsError), std::system_category()});
}

} // namespace brisk
