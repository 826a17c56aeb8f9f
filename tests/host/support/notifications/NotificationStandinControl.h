// Steers the notification area of the simulated Windows, with those operations of the real stand-in's control that the
// tests of the service's logic use. Toasts are numbered from 1.
#pragma once

#include "host/simulation/Toasts.h"

#include <chrono>
#include <string>
#include <vector>

#include <shlobj.h>

namespace brisk::standin {

class NotificationStandinControl {
public:
    struct EventResult {
        unsigned handlers;
        HRESULT result;
    };

    static NotificationStandinControl inProcess() { return {}; }

    // One line for each toast shown: number, place and title.
    std::vector<std::string> list() const;
    // Throws std::runtime_error for a toast that is hidden, or that was activated before.
    EventResult press(unsigned number, unsigned button, std::chrono::milliseconds limit = {}) const;
    EventResult dismiss(unsigned number, unsigned reason, std::chrono::milliseconds limit = {}) const;
    EventResult activate(unsigned number, const std::string& arguments, std::chrono::milliseconds limit = {}) const;
    // Of the real grammar only the failing Show.
    void setFailures(const std::string& rules) const;
    void reset() const;
};

} // namespace brisk::standin
