#pragma once

#include <windows.h>

namespace brisk {

// Whether a service already runs on this desktop.
bool isServiceWindowPresent();

// Creates the hidden window that the host posts its messages to and runs the message loop until the quit message.
// Afterwards, and after an exception, no button's action runs, and none begins any more. Throws std::runtime_error when
// the window cannot be made, and whatever a handler throws.
void runServiceWindow(HINSTANCE instance);

} // namespace brisk
