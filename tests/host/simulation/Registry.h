// The registry's tree. Names of keys and values are compared without regard to case.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include <windows.h>

namespace brisk::host {

struct CaseInsensitiveLess {
    bool operator()(const std::string& left, const std::string& right) const;
};

struct RegistryValue {
    DWORD type = REG_NONE;
    std::string data;

    friend bool operator==(const RegistryValue&, const RegistryValue&) = default;
};

struct RegistryKeyNode {
    std::map<std::string, std::shared_ptr<RegistryKeyNode>, CaseInsensitiveLess> keys;
    std::map<std::string, RegistryValue, CaseInsensitiveLess> values;
    bool deleted = false; // while a handle is still open
};

struct Registry {
    Registry();

    std::shared_ptr<RegistryKeyNode> currentUser;
    std::shared_ptr<RegistryKeyNode> localMachine;
    // While RegOverridePredefKey has put another key in a root's place.
    std::shared_ptr<RegistryKeyNode> currentUserOverride;
    std::shared_ptr<RegistryKeyNode> localMachineOverride;
    std::uint64_t changes = 0; // calls that may have changed something
};

Registry& registry();

// The key at the path below a root; null when there is none.
std::shared_ptr<RegistryKeyNode> findKey(std::shared_ptr<RegistryKeyNode> root, const std::string& path);
std::shared_ptr<RegistryKeyNode> makeKey(std::shared_ptr<RegistryKeyNode> root, const std::string& path);
// The key with all it holds. Handles that are open on them stay, and fail.
void deleteKey(const std::shared_ptr<RegistryKeyNode>& root, const std::string& path);

} // namespace brisk::host
