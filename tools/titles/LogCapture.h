#pragma once

#include <string>

namespace brisk::workbench {

// Receives what the service's code logs while it lives, instead of the debugger. One at a time.
class LogCapture {
public:
    LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;
    ~LogCapture();

    // What was logged since the last call. A text that still waits for the line behind it is given as a line.
    std::string take();

private:
    std::string received;
};

} // namespace brisk::workbench
