#include "titles/RegisterConfigAdapter.h"

#include "base/Log.h"

#include <algorithm>
#include <cstring>

namespace brisk {

namespace {

HKEY findRoot(const std::string& name) {
    static const std::map<std::string, HKEY> roots{{"HKEY_CURRENT_USER", HKEY_CURRENT_USER},
                                                   {"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE}};
    const auto root = roots.find(name);
    return root == roots.end() ? nullptr : root->second;
}

bool writeValue(HKEY key, const std::string& name, DWORD type, const void* data, std::size_t size) {
    const LSTATUS status =
        RegSetValueExA(key, name.c_str(), 0, type, static_cast<const BYTE*>(data), static_cast<DWORD>(size));
    if (status != ERROR_SUCCESS) {
        logLine("Brisk : setValue failed for '", name, "'. Error ", std::dec, status, ".");
        return false;
    }
    return true;
}

} // namespace

bool RegisterConfigAdapter::findConfig(const std::string& /*appDirectory*/) {
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
    key = nullptr;
    // An unknown root is null; the open then fails and its error is logged.
    const LSTATUS status =
        RegOpenKeyExA(findRoot(location.substr(0, separator)), path.c_str(), 0, KEY_ALL_ACCESS, &key);
    if (status != ERROR_SUCCESS) {
        logLine("Brisk : RegOpenKeyEx failed. Error ", std::dec, status, ".");
        return false;
    }
    return true;
}

bool RegisterConfigAdapter::loadConfig() {
    return key != nullptr;
}

bool RegisterConfigAdapter::saveConfig() {
    return true;
}

bool RegisterConfigAdapter::setValue(const std::string& name, const std::string& text) {
    return writeValue(key, name, REG_SZ, text.c_str(), text.size() + 1);
}

bool RegisterConfigAdapter::setIntValue(const std::string& name, std::int32_t number) {
    return writeValue(key, name, REG_DWORD, &number, sizeof number);
}

std::int32_t RegisterConfigAdapter::getIntValue(const std::string& name, std::int32_t defaultNumber) {
    std::int32_t number = 0;
    DWORD size = sizeof number;
    const LSTATUS status =
        RegQueryValueExA(key, name.c_str(), nullptr, nullptr, reinterpret_cast<BYTE*>(&number), &size);
    return status == ERROR_SUCCESS ? number : defaultNumber;
}

std::string RegisterConfigAdapter::getValue(const std::string& name, const std::string& defaultText) {
    DWORD size = 0;
    RegQueryValueExA(key, name.c_str(), nullptr, nullptr, nullptr, &size);
    std::string data(size, '\0');
    // An empty string still gives the query a buffer to write no byte to.
    if (RegQueryValueExA(key, name.c_str(), nullptr, nullptr, reinterpret_cast<BYTE*>(data.data()), &size) !=
        ERROR_SUCCESS) {
        return defaultText;
    }
    data.resize(std::strlen(data.c_str()));
    return data;
}

} // namespace brisk
