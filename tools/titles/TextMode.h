#pragma once

#include <string>
#include <string_view>

namespace brisk::workbench {

// What the C library's text mode on Windows makes of a file that is read or written whole (docs/text-files.md).

// The text that is read from these bytes: CR LF is LF, and 0x1A ends it.
std::string readAsText(std::string_view bytes);

// The bytes that are written for a text: LF is CR LF.
std::string writeAsText(std::string_view text);

} // namespace brisk::workbench
