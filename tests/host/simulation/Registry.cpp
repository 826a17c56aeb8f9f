#include "host/simulation/Registry.h"

#include <strings.h>

namespace brisk::host {

namespace {

// Takes the next name off the path.
std::string takeName(std::string& path) {
    const std::size_t separator = path.find('\\');
    const std::string name = path.substr(0, separator);
    path = separator == std::string::npos ? std::string() : path.substr(separator + 1);
    return name;
}

void markDeleted(RegistryKeyNode& key) {
    key.deleted = true;
    for (const auto& [name, child] : key.keys) {
        markDeleted(*child);
    }
}

} // namespace

bool CaseInsensitiveLess::operator()(const std::string& left, const std::string& right) const {
    return strcasecmp(left.c_str(), right.c_str()) < 0;
}

Registry::Registry()
    : currentUser(std::make_shared<RegistryKeyNode>()), localMachine(std::make_shared<RegistryKeyNode>()) {}

Registry& registry() {
    static Registry theRegistry;
    return theRegistry;
}

std::shared_ptr<RegistryKeyNode> findKey(std::shared_ptr<RegistryKeyNode> root, const std::string& path) {
    for (std::string rest = path; root && !rest.empty();) {
        const auto child = root->keys.find(takeName(rest));
        root = child == root->keys.end() ? nullptr : child->second;
    }
    return root;
}

std::shared_ptr<RegistryKeyNode> makeKey(std::shared_ptr<RegistryKeyNode> root, const std::string& path) {
    for (std::string rest = path; !rest.empty();) {
        std::shared_ptr<RegistryKeyNode>& child = root->keys[takeName(rest)];
        if (!child) {
            child = std::make_shared<RegistryKeyNode>();
        }
        root = child;
    }
    return root;
}

void deleteKey(const std::shared_ptr<RegistryKeyNode>& root, const std::string& path) {
    const std::size_t separator = path.rfind('\\');
    const bool isTop = separator == std::string::npos;
    const auto parent = isTop ? root : findKey(root, path.substr(0, separator));
    if (!parent) {
        return;
    }
    const auto child = parent->keys.find(isTop ? path : path.substr(separator + 1));
    if (child != parent->keys.end()) {
        markDeleted(*child->second);
        parent->keys.erase(child);
    }
}

} // namespace brisk::host
