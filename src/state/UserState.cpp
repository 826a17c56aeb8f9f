#include "state/UserState.h"

#include "base/Log.h"
#include "base/WindowsHandles.h"

#include <optional>

namespace brisk {

namespace {

constexpr char kMainKey[] = "SOFTWARE\\Orlan\\briskGCT";
constexpr char kToastsShownKey[] = "SOFTWARE\\Orlan\\briskGCT\\ToastsShown";
constexpr char kPatchedAppsKey[] = "SOFTWARE\\Orlan\\briskGCT\\PatchedApps";
constexpr char kToastsNotAllowed[] = "ToastsNotAllowed";

// Logs a failed registry call in the words of the operation; true on success.
bool check(const char* operation, const char* call, LSTATUS status) {
    if (status != ERROR_SUCCESS) {
        logLine("Brisk : ", operation, " : ", call, " failed. Error ", std::dec, status, ".");
    }
    return status == ERROR_SUCCESS;
}

LSTATUS tryCreateKey(const char* path, RegistryKey& key) {
    const LSTATUS status = RegCreateKeyExA(HKEY_CURRENT_USER, path, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS,
                                           nullptr, key.receive(), nullptr);
    return status == ERROR_ALREADY_EXISTS ? ERROR_SUCCESS : status;
}

bool createKey(const char* operation, const char* path, RegistryKey& key) {
    return check(operation, "RegCreateKeyEx", tryCreateKey(path, key));
}

// The value's first four bytes whatever its type; nothing when it is missing or longer.
std::optional<std::int32_t> readNumber(const RegistryKey& key, const std::string& name) {
    std::int32_t number = 0;
    DWORD size = sizeof number;
    if (RegQueryValueExA(key.get(), name.c_str(), nullptr, nullptr, reinterpret_cast<BYTE*>(&number), &size) !=
        ERROR_SUCCESS) {
        return std::nullopt;
    }
    return number;
}

bool writeNumber(const char* operation, const RegistryKey& key, const std::string& name, std::uint32_t number) {
    return check(
        operation, "RegSetValueEx",
        RegSetValueExA(key.get(), name.c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number));
}

} // namespace

bool isRegistryAccessible() {
    RegistryKey key;
    return tryCreateKey(kMainKey, key) == ERROR_SUCCESS;
}

bool areToastsAllowed() {
    RegistryKey key;
    return !createKey("areToastsAllowed", kMainKey, key) || readNumber(key, kToastsNotAllowed).value_or(0) == 0;
}

bool disallowToasts() {
    RegistryKey key;
    return createKey("disallowToasts", kMainKey, key) && writeNumber("disallowToasts", key, kToastsNotAllowed, 1);
}

std::int32_t getNumberOfToastsShown(const std::string& title) {
    RegistryKey key;
    return createKey("getNumberOfToastsShown", kToastsShownKey, key) ? readNumber(key, title).value_or(0) : 0;
}

bool incNumberOfToastsShown(const std::string& title) {
    RegistryKey key;
    if (!createKey("incNumberOfToastsShown", kToastsShownKey, key)) {
        return false;
    }
    const auto count = static_cast<std::uint32_t>(readNumber(key, title).value_or(0));
    return writeNumber("incNumberOfToastsShown", key, title, count + 1);
}

bool setPatched(const std::string& title) {
    RegistryKey key;
    return createKey("setPatched", kPatchedAppsKey, key) && writeNumber("setPatched", key, title, 1);
}

bool resetToastsAllowed() {
    RegistryKey key;
    return check("resetToastsAllowed", "RegOpenKey", RegOpenKeyA(HKEY_CURRENT_USER, kMainKey, key.receive())) &&
           check("resetToastsAllowed", "RegDeleteValue", RegDeleteValueA(key.get(), kToastsNotAllowed));
}

bool resetToastsShown() {
    RegistryKey key;
    return check("resetToastsShown", "RegOpenKeyEx",
                 RegOpenKeyExA(HKEY_CURRENT_USER, kToastsShownKey, 0, KEY_ALL_ACCESS, key.receive())) &&
           check("resetToastsShown", "RegDeleteTree", RegDeleteTreeA(key.get(), nullptr));
}

} // namespace brisk
