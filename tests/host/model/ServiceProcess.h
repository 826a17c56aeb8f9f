// The service as a process: all its state is process-wide, and a new process begins without any.
#pragma once

#include <string>

namespace brisk::model::ServiceProcess {

// Runs WinMain to its end; the exit code.
int run(const std::string& commandLine);

// What was is forgotten, as the system forgets a process: variables, windows, timers and handles.
void forget();

} // namespace brisk::model::ServiceProcess
