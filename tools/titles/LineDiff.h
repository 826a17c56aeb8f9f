#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace brisk::workbench {

// How two texts differ, as a unified diff without its head: hunks "@@ -a,b +c,d @@" of lines that begin with ' ', '-'
// or
// '+'. Line ends are left out: CR LF, LF and a missing last one are the same. Empty when nothing differs. A text too
// different to be compared in reasonable time gives one line that says so.
std::string diffLines(std::string_view before, std::string_view after);

} // namespace brisk::workbench
