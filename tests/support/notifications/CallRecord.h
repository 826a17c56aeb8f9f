#pragma once

#include <string>

namespace brisk::standin {

// Appends one line (UTF-8, without its line end) to the file that kRecordVariable names at this moment. Any thread.
void recordLine(const std::string& line);

} // namespace brisk::standin
