#include "tools/titles/MachineRegistry.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

#include <windows.h>

namespace brisk::workbench {

namespace {

// Its parts point into the path.
struct RegistryPath {
    HKEY root;
    std::string below;
};

RegistryPath split(const std::string& path) {
    const std::size_t end = std::min(path.find('\\'), path.size());
    const std::string root = path.substr(0, end);
    return {root == "HKEY_CURRENT_USER"    ? HKEY_CURRENT_USER
            : root == "HKEY_LOCAL_MACHINE" ? HKEY_LOCAL_MACHINE
                                           : nullptr,
            path.substr(std::min(end + 1, path.size()))};
}

// A key that is closed with the object; null when it could not be opened.
class OpenKey {
public:
    explicit OpenKey(const std::string& path) {
        const RegistryPath parts = split(path);
        if (!parts.root || RegOpenKeyExA(parts.root, parts.below.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) {
            key = nullptr;
        }
    }
    OpenKey(const OpenKey&) = delete;
    OpenKey& operator=(const OpenKey&) = delete;
    ~OpenKey() {
        if (key) {
            RegCloseKey(key);
        }
    }

    HKEY get() const { return key; }

private:
    HKEY key = nullptr;
};

void readValues(HKEY key, RegistryKey& values) {
    std::vector<char> name(32'768);
    for (DWORD index = 0;; ++index) {
        auto nameSize = static_cast<DWORD>(name.size());
        if (RegEnumValueA(key, index, name.data(), &nameSize, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
            return;
        }
        RegistryValue value;
        DWORD type = 0;
        DWORD size = 0;
        RegQueryValueExA(key, name.data(), nullptr, &type, nullptr, &size);
        value.data.resize(size);
        if (RegQueryValueExA(key, name.data(), nullptr, &type, reinterpret_cast<BYTE*>(value.data.data()), &size) ==
            ERROR_SUCCESS) {
            value.data.resize(size);
            value.type = type;
            values[std::string(name.data(), nameSize)] = std::move(value);
        }
    }
}

} // namespace

void readRegistryKey(const std::string& path, RegistryKeys& keys) {
    const OpenKey key(path);
    if (key.get()) {
        readValues(key.get(), keys[path]);
    }
}

void readRegistryTree(const std::string& path, RegistryKeys& keys) {
    readRegistryKey(path, keys);
    const OpenKey key(path);
    char name[256];
    DWORD size = sizeof name;
    for (DWORD index = 0;
         key.get() && RegEnumKeyExA(key.get(), index, name, &size, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
         ++index) {
        readRegistryTree(path + '\\' + std::string(name, size), keys);
        size = sizeof name;
    }
}

void writeRegistryKeys(const RegistryKeys& keys) {
    for (const auto& [path, values] : keys) {
        const RegistryPath parts = split(path);
        HKEY key = nullptr;
        LSTATUS status =
            RegCreateKeyExA(parts.root, parts.below.c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr, &key, nullptr);
        for (const auto& [name, value] : values) {
            if (status == ERROR_SUCCESS) {
                status =
                    RegSetValueExA(key, name.c_str(), 0, value.type, reinterpret_cast<const BYTE*>(value.data.data()),
                                   static_cast<DWORD>(value.data.size()));
            }
        }
        if (key) {
            RegCloseKey(key);
        }
        if (status != ERROR_SUCCESS) {
            throw std::runtime_error("cannot write the registry key " + path + ", error " + std::to_string(status));
        }
    }
}

void deleteRegistryKey(const std::string& path) {
    const RegistryPath parts = split(path);
    if (parts.root && !parts.below.empty()) {
        RegDeleteTreeA(parts.root, parts.below.c_str());
    }
}

} // namespace brisk::workbench
