#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace brisk::workbench {

// A registry value: its type's number and its bytes as RegQueryValueExA gives them, texts in UTF-8 with their zero.
struct RegistryValue {
    std::uint32_t type = 0;
    std::string data;
};

// Names differ in more than letter case.
struct IgnoringCase {
    using is_transparent = void;
    bool operator()(std::string_view one, std::string_view other) const;
};

using RegistryKey = std::map<std::string, RegistryValue, IgnoringCase>; // by value name; "" is the default value
using RegistryKeys = std::map<std::string, RegistryKey, IgnoringCase>;  // by path from the root on, backslashes

constexpr std::uint32_t kRegistryText = 1;   // REG_SZ
constexpr std::uint32_t kRegistryNumber = 4; // REG_DWORD

// What a file that Windows' registry editor exported holds: UTF-16 with a byte-order mark ("Windows Registry Editor
// Version 5.00"), the same as UTF-8, or "REGEDIT4". Keys above the named ones exist, too. Nothing when it is none of
// these; other lines are passed over.
// `onFault` hears the numbers of the lines, from 1, that can be read as nothing an export has.
std::optional<RegistryKeys> readRegistryExport(std::string_view bytes,
                                               const std::function<void(std::size_t)>& onFault = {});

// A key's values, one a line, as an export has them: "ScreenWidth"=dword:00000780.
std::string describe(const RegistryKey& key);

} // namespace brisk::workbench
