#include "host/simulation/Handles.h"
#include "host/simulation/Registry.h"
#include "host/simulation/SimulatedCall.h"

#include <cstring>
#include <iterator>

namespace {

using namespace brisk::host;

constexpr DWORD kDelete = 0x10000;

struct OpenKey {
    std::shared_ptr<RegistryKeyNode> node;
    DWORD access;
};

// A root or an open key. Error codes as Windows gives them.
LSTATUS resolve(HKEY key, OpenKey& found, const char* call) {
    if (key == HKEY_CURRENT_USER) {
        const Registry& all = registry();
        found = {all.currentUserOverride ? all.currentUserOverride : all.currentUser, KEY_ALL_ACCESS};
        return ERROR_SUCCESS;
    }
    if (key == HKEY_LOCAL_MACHINE) {
        const Registry& all = registry();
        found = {all.localMachineOverride ? all.localMachineOverride : all.localMachine, KEY_ALL_ACCESS};
        return ERROR_SUCCESS;
    }
    const OpenKey* open = handles().find<OpenKey>(HandleKind::RegistryKey, key, call);
    if (!open) {
        return ERROR_INVALID_HANDLE;
    }
    found = *open;
    return found.node->deleted ? ERROR_KEY_DELETED : ERROR_SUCCESS;
}

LSTATUS resolve(HKEY key, DWORD access, OpenKey& found, const char* call) {
    const LSTATUS status = resolve(key, found, call);
    return status == ERROR_SUCCESS && (found.access & access) != access ? ERROR_ACCESS_DENIED : status;
}

HKEY openHandle(const std::shared_ptr<RegistryKeyNode>& node, DWORD access) {
    return static_cast<HKEY>(static_cast<void*>(handles().open(HandleKind::RegistryKey, OpenKey{node, access})));
}

LSTATUS openKey(HKEY root, LPCSTR path, DWORD access, HKEY* key, const char* call) {
    OpenKey parent;
    if (const LSTATUS status = resolve(root, parent, call); status != ERROR_SUCCESS) {
        return status;
    }
    const auto node = findKey(parent.node, path ? path : "");
    if (!node) {
        return ERROR_FILE_NOT_FOUND;
    }
    *key = openHandle(node, access);
    return ERROR_SUCCESS;
}

std::string nameOf(LPCSTR name) {
    return name ? name : "";
}

} // namespace

LSTATUS RegCreateKeyExA(HKEY root, LPCSTR path, DWORD reserved, LPSTR keyClass, DWORD options, DWORD access,
                        SECURITY_ATTRIBUTES* security, HKEY* key, LPDWORD disposition) {
    return simulate<RegCreateKeyExA>(
        [&]() -> LSTATUS {
            OpenKey parent;
            if (const LSTATUS status = resolve(root, parent, "RegCreateKeyExA"); status != ERROR_SUCCESS) {
                return status;
            }
            ++registry().changes;
            *key = openHandle(makeKey(parent.node, nameOf(path)), access);
            return ERROR_SUCCESS;
        },
        root, path, reserved, keyClass, options, access, security, key, disposition);
}

LSTATUS RegCreateKeyA(HKEY root, LPCSTR path, HKEY* key) {
    return RegCreateKeyExA(root, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, key, nullptr);
}

LSTATUS RegOpenKeyExA(HKEY root, LPCSTR path, DWORD options, DWORD access, HKEY* key) {
    return simulate<RegOpenKeyExA>([&] { return openKey(root, path, access, key, "RegOpenKeyExA"); }, root, path,
                                   options, access, key);
}

LSTATUS RegOpenKeyA(HKEY root, LPCSTR path, HKEY* key) {
    return simulate<RegOpenKeyA>([&] { return openKey(root, path, KEY_ALL_ACCESS, key, "RegOpenKeyA"); }, root, path,
                                 key);
}

LSTATUS RegCloseKey(HKEY key) {
    return simulate<RegCloseKey>(
        [&]() -> LSTATUS {
            if (key == HKEY_CURRENT_USER || key == HKEY_LOCAL_MACHINE) {
                return ERROR_SUCCESS;
            }
            return handles().close(HandleKind::RegistryKey, key, "RegCloseKey") ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
        },
        key);
}

LSTATUS RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size) {
    return simulate<RegQueryValueExA>(
        [&]() -> LSTATUS {
            OpenKey open;
            if (const LSTATUS status = resolve(key, KEY_QUERY_VALUE, open, "RegQueryValueExA");
                status != ERROR_SUCCESS) {
                return status;
            }
            const auto value = open.node->values.find(nameOf(name));
            if (value == open.node->values.end()) {
                return ERROR_FILE_NOT_FOUND;
            }
            const std::string& bytes = value->second.data;
            if (type) {
                *type = value->second.type;
            }
            const DWORD capacity = size ? *size : 0;
            if (size) {
                *size = static_cast<DWORD>(bytes.size());
            }
            if (!data) {
                return ERROR_SUCCESS;
            }
            if (capacity < bytes.size()) {
                return ERROR_MORE_DATA;
            }
            std::memcpy(data, bytes.data(), bytes.size());
            return ERROR_SUCCESS;
        },
        key, name, reserved, type, data, size);
}

LSTATUS RegSetValueExA(HKEY key, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size) {
    return simulate<RegSetValueExA>(
        [&]() -> LSTATUS {
            OpenKey open;
            if (const LSTATUS status = resolve(key, KEY_SET_VALUE, open, "RegSetValueExA"); status != ERROR_SUCCESS) {
                return status;
            }
            ++registry().changes;
            open.node->values[nameOf(name)] = {type, {reinterpret_cast<const char*>(data), size}};
            return ERROR_SUCCESS;
        },
        key, name, reserved, type, data, size);
}

LSTATUS RegSetKeyValueA(HKEY root, LPCSTR path, LPCSTR name, DWORD type, LPCVOID data, DWORD size) {
    OpenKey open;
    const LSTATUS status = resolve(root, open, "RegSetKeyValueA");
    if (status == ERROR_SUCCESS) {
        makeKey(open.node, nameOf(path))->values[nameOf(name)] = {type, {static_cast<const char*>(data), size}};
    }
    return status;
}

LSTATUS RegGetValueA(HKEY root, LPCSTR path, LPCSTR name, DWORD flags, LPDWORD type, PVOID data, LPDWORD size) {
    HKEY key = nullptr;
    LSTATUS status = simulatedCall<RegOpenKeyExA>.real(root, path, 0, KEY_READ, &key);
    if (status == ERROR_SUCCESS) {
        DWORD found = REG_NONE;
        const DWORD capacity = size ? *size : 0;
        status = simulatedCall<RegQueryValueExA>.real(key, name, nullptr, &found, nullptr, size);
        const DWORD accepted = found == REG_SZ ? RRF_RT_REG_SZ : found == REG_DWORD ? RRF_RT_REG_DWORD : RRF_RT_ANY;
        if (status == ERROR_SUCCESS && (flags & accepted) == 0) {
            status = ERROR_UNSUPPORTED_TYPE;
        }
        if (status == ERROR_SUCCESS) {
            if (size) {
                *size = capacity;
            }
            status = simulatedCall<RegQueryValueExA>.real(key, name, nullptr, type, static_cast<BYTE*>(data), size);
        }
        simulatedCall<RegCloseKey>.real(key);
    }
    return status;
}

LSTATUS RegDeleteValueA(HKEY key, LPCSTR name) {
    return simulate<RegDeleteValueA>(
        [&]() -> LSTATUS {
            OpenKey open;
            if (const LSTATUS status = resolve(key, KEY_SET_VALUE, open, "RegDeleteValueA"); status != ERROR_SUCCESS) {
                return status;
            }
            ++registry().changes;
            return open.node->values.erase(nameOf(name)) == 1 ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
        },
        key, name);
}

LSTATUS RegDeleteTreeA(HKEY key, LPCSTR path) {
    return simulate<RegDeleteTreeA>(
        [&]() -> LSTATUS {
            OpenKey open;
            const DWORD access = kDelete | KEY_ENUMERATE_SUB_KEYS | KEY_QUERY_VALUE | KEY_SET_VALUE;
            if (const LSTATUS status = resolve(key, access, open, "RegDeleteTreeA"); status != ERROR_SUCCESS) {
                return status;
            }
            ++registry().changes;
            if (path && !findKey(open.node, path)) {
                return ERROR_FILE_NOT_FOUND;
            }
            if (path) {
                deleteKey(open.node, path);
                return ERROR_SUCCESS;
            }
            while (!open.node->keys.empty()) {
                deleteKey(open.node, std::string(open.node->keys.begin()->first));
            }
            open.node->values.clear();
            return ERROR_SUCCESS;
        },
        key, path);
}

LSTATUS RegEnumValueA(HKEY key, DWORD index, LPSTR name, LPDWORD nameLength, LPDWORD /*reserved*/, LPDWORD type,
                      LPBYTE data, LPDWORD size) {
    OpenKey open;
    if (const LSTATUS status = resolve(key, KEY_QUERY_VALUE, open, "RegEnumValueA"); status != ERROR_SUCCESS) {
        return status;
    }
    if (index >= open.node->values.size()) {
        return ERROR_NO_MORE_ITEMS;
    }
    const auto& [found, value] = *std::next(open.node->values.begin(), index);
    if (found.size() >= *nameLength || (data && value.data.size() > *size)) {
        return ERROR_MORE_DATA;
    }
    std::strcpy(name, found.c_str());
    *nameLength = static_cast<DWORD>(found.size());
    if (type) {
        *type = value.type;
    }
    if (data) {
        std::memcpy(data, value.data.data(), value.data.size());
        *size = static_cast<DWORD>(value.data.size());
    }
    return ERROR_SUCCESS;
}

LSTATUS RegOverridePredefKey(HKEY predefined, HKEY replacement) {
    OpenKey open;
    if (replacement) {
        if (const LSTATUS status = resolve(replacement, open, "RegOverridePredefKey"); status != ERROR_SUCCESS) {
            return status;
        }
    }
    auto& root = predefined == HKEY_CURRENT_USER ? registry().currentUserOverride : registry().localMachineOverride;
    root = open.node;
    return ERROR_SUCCESS;
}
