#pragma once

#include <cstdint>
#include <string>

namespace brisk {

// What the service remembers per user, in the current user's registry hive:
//
//   SOFTWARE\Orlan\briskGCT                ToastsNotAllowed   REG_DWORD  1: never offer again
//   SOFTWARE\Orlan\briskGCT\ToastsShown    <executable name>  REG_DWORD  how often the offer was put off
//   SOFTWARE\Orlan\briskGCT\PatchedApps    <executable name>  REG_DWORD  1: the title was patched
//
// Nothing is cached, nothing throws; failures are logged. Any thread. Titles are named by their executable's file name,
// which is the registry value's name as it stands.

// Whether the main key can be created or opened with full access; the only operation that does not log its failure.
bool isRegistryAccessible();

bool areToastsAllowed(); // true also on failure: docs/decisions/registry-failures.md
bool disallowToasts();
std::int32_t getNumberOfToastsShown(const std::string& title); // 0 on failure
bool incNumberOfToastsShown(const std::string& title);
bool setPatched(const std::string& title);

// Forget the answers. False also when the value or the key does not exist.
bool resetToastsAllowed();
bool resetToastsShown();

} // namespace brisk
