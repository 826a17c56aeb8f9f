#include "base/DebuggerOutput.h"

#include <windows.h>

namespace brisk {

void writeToDebugger(const std::string& text) {
    OutputDebugStringA(text.c_str());
}

} // namespace brisk
