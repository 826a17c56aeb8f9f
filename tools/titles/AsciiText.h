#pragma once

#include <string>
#include <string_view>

namespace brisk::workbench {

// Letters A to Z as a to z; all other bytes stay as they are.
char lowered(char byte);
std::string lowered(std::string_view text);

// The two digits of a byte, in capitals.
std::string hexadecimal(char byte);

} // namespace brisk::workbench
