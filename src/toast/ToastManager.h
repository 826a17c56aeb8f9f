#pragma once

#include "toast/WinToastHandler.h"

#include <memory>
#include <string>
#include <vector>

namespace brisk {

// The service's doorway to notifications: one manager, made on first access; any thread may call it. Every narrow
// string is widened byte by byte (each byte sign-extended), without a code page (docs/decisions/kept-behaviour.md):
// texts are expected to be plain ASCII.
class ToastManager {
public:
    // The manager, created if there is none. Throws std::runtime_error when the system does not support toasts or the
    // identity cannot be registered; then there is still none. Any thread.
    static std::shared_ptr<ToastManager> instance();

    // Shows a toast. A body of several lines is pairs of lines. A toast that cannot be shown is only logged.
    void show(const std::string& imagePath, const std::string& title, const std::string& subtitle,
              const std::string& body, const std::vector<ToastAction>& actions);
    // Hides and forgets all toasts that this process has shown.
    void clear();
    // Clears, and lets the manager go.
    void cleanup();

private:
    ToastManager();
};

} // namespace brisk
