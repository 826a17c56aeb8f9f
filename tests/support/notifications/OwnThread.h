#pragma once

#include <functional>

namespace brisk::standin {

// Runs `body` on a new thread that nobody waits for. Throws std::runtime_error where there can be no thread.
void startThread(std::function<void()> body);

} // namespace brisk::standin
