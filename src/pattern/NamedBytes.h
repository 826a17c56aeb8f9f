#pragma once

#include "pattern/ByteSet.h"

#include <optional>
#include <string_view>

namespace brisk {

// What names stand for in a bracket expression, always as in the "C" locale. The tables are our own: C++ libraries
// differ in the names they know and in what they hold for equal.

// The bytes of a class: "alpha" of [[:alpha:]], in letters of either case, or "d", "s" or "w". Nothing where there is
// no class of that name.
std::optional<ByteSet> findClass(std::string_view name);

// The byte of a collating element: "hyphen" of [[.hyphen.]], or any single byte, which names itself. Nothing where
// there is no element of that name.
std::optional<char> findCollatingElement(std::string_view name);

// The bytes of the element's equivalence class, [[=a=]]: those that differ in letter case only.
ByteSet equivalentBytes(char element);

} // namespace brisk
