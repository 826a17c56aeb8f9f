#pragma once

#include <string>

namespace brisk {

// Hands text to an attached debugger; lost where there is none, as always outside of Windows.
void writeToDebugger(const std::string& text);

} // namespace brisk
