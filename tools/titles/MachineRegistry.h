#pragma once

#include "tools/titles/RegistryExport.h"

#include <string>

namespace brisk::workbench {

// The registry of this machine, on Windows alone. Paths are those of RegistryKeys: "HKEY_CURRENT_USER\Software\...".

// Reads the key's values into `keys`, without asking for a right to anything but reading. Nothing is added when there
// is no such key.
void readRegistryKey(const std::string& path, RegistryKeys& keys);

// The same with all keys below it.
void readRegistryTree(const std::string& path, RegistryKeys& keys);

// Creates the keys with their values. Throws std::runtime_error when that fails.
void writeRegistryKeys(const RegistryKeys& keys);

// Deletes the key and all below it; nothing happens when there is none.
void deleteRegistryKey(const std::string& path);

} // namespace brisk::workbench
