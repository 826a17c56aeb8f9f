#include "Facts.h"

#include "base/WindowsHandles.h"

namespace brisk::facts {

namespace {

constexpr char kOwnKey[] = "Software\\brisk-windows-facts";

bool isElevated() {
    HANDLE token = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token)) {
        return false;
    }
    const UniqueHandle owned(token);
    TOKEN_ELEVATION elevation{};
    DWORD size = 0;
    return GetTokenInformation(token, TokenElevation, &elevation, sizeof elevation, &size) &&
           elevation.TokenIsElevated != 0;
}

// A null name empties a key and keeps it.
Answer deleteTree() {
    RegistryKey key;
    RegistryKey below;
    RegCreateKeyExA(HKEY_CURRENT_USER, kOwnKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, key.receive(), nullptr);
    RegCreateKeyExA(key.get(), "below", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, below.receive(), nullptr);
    const DWORD number = 1;
    RegSetValueExA(key.get(), "value", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number);
    const LSTATUS result = RegDeleteTreeA(key.get(), nullptr);
    DWORD keys = 99;
    DWORD values = 99;
    const LSTATUS asked = RegQueryInfoKeyA(key.get(), nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values,
                                           nullptr, nullptr, nullptr, nullptr);
    RegDeleteKeyA(HKEY_CURRENT_USER, kOwnKey);
    return holdsIf(result == ERROR_SUCCESS && asked == ERROR_SUCCESS && keys == 0 && values == 0,
                   "result " + std::to_string(result) + ", then " + std::to_string(keys) + " keys and " +
                       std::to_string(values) + " values");
}

// Opening changes nothing.
Answer localMachine() {
    if (isElevated()) {
        return cannotTell("this runs as an administrator; run it without elevation");
    }
    RegistryKey key;
    const LSTATUS result = RegOpenKeyExA(HKEY_LOCAL_MACHINE, "SOFTWARE", 0, KEY_ALL_ACCESS, key.receive());
    return holdsIf(result == ERROR_ACCESS_DENIED, "result " + std::to_string(result));
}

} // namespace

std::vector<Fact> registryFacts() {
    return {{"delete-tree", deleteTree}, {"local-machine", localMachine}};
}

} // namespace brisk::facts
