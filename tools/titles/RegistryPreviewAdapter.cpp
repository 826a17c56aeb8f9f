#include "tools/titles/RegistryPreviewAdapter.h"

#include "base/Log.h"

#include <algorithm>

namespace brisk::workbench {

namespace {

constexpr int kFileNotFound = 2;  // ERROR_FILE_NOT_FOUND
constexpr int kInvalidHandle = 6; // ERROR_INVALID_HANDLE

} // namespace

bool RegistryPreviewAdapter::findConfig(const std::string& /*appDirectory*/) {
    if (configLocations.empty()) {
        return false;
    }
    const std::string& location = configLocations.front();
    const std::size_t separator = location.find('/');
    if (separator == std::string::npos) {
        return false;
    }
    std::string path = location.substr(separator + 1);
    std::replace(path.begin(), path.end(), '/', '\\');
    logLine("Brisk : checking registry path '", path, "'.");
    const std::string root = location.substr(0, separator);
    const bool hasRoot = root == "HKEY_CURRENT_USER" || root == "HKEY_LOCAL_MACHINE";
    while (path.ends_with('\\')) {
        path.pop_back();
    }
    const auto key =
        registry ? registry->find(path.empty() ? root : root + '\\' + path) : RegistryKeys::const_iterator();
    if (!hasRoot || !registry || key == registry->end()) {
        logLine("Brisk : RegOpenKeyEx failed. Error ", std::dec, hasRoot ? kFileNotFound : kInvalidHandle, ".");
        return false;
    }
    values = key->second;
    return true;
}

bool RegistryPreviewAdapter::setValue(const std::string& name, const std::string& text) {
    writes.push_back({name, text, false});
    values[name] = {kRegistryText, text + '\0'};
    return true;
}

bool RegistryPreviewAdapter::setIntValue(const std::string& name, std::int32_t number) {
    writes.push_back({name, std::to_string(number), true});
    std::string data;
    for (unsigned shift = 0; shift < 32; shift += 8) {
        data += static_cast<char>(static_cast<std::uint32_t>(number) >> shift);
    }
    values[name] = {kRegistryNumber, data};
    return true;
}

std::int32_t RegistryPreviewAdapter::getIntValue(const std::string& name, std::int32_t defaultNumber) {
    const auto value = values.find(name);
    if (value == values.end() || value->second.data.size() > sizeof defaultNumber) {
        return defaultNumber;
    }
    std::uint32_t number = 0;
    for (std::size_t at = 0; at < value->second.data.size(); ++at) {
        number |= static_cast<std::uint32_t>(static_cast<unsigned char>(value->second.data[at])) << (8 * at);
    }
    return static_cast<std::int32_t>(number);
}

std::string RegistryPreviewAdapter::getValue(const std::string& name, const std::string& defaultText) {
    const auto value = values.find(name);
    // Up to the first zero, as a program reads it.
    return value == values.end() ? defaultText : value->second.data.substr(0, value->second.data.find('\0'));
}

KeyMatches RegistryPreviewAdapter::findMatches(const std::string& name) const {
    return {values.contains(name) ? 1U : 0U, {}};
}

std::string RegistryPreviewAdapter::snapshot() const {
    return describe(values);
}

} // namespace brisk::workbench
