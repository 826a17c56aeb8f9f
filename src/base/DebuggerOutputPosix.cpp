#include "base/DebuggerOutput.h"

namespace brisk {

void writeToDebugger(const std::string& /*text*/) {}

} // namespace brisk
