// The toasts that the code under test shows, taken by the notification stand-in in this process.
#pragma once

#include "support/ExpectedToasts.h"
#include "support/Sandbox.h"
#include "support/notifications/NotificationStandinControl.h"

#include <string>
#include <vector>

namespace brisk::testing {

// A notification service without any toast while it lives. Skips the test where this is not Wine: the stand-in is
// registered for all users, and the service's shortcut would be put into the user's own Start menu.
class Toasts {
public:
    Toasts();
    Toasts(const Toasts&) = delete;
    Toasts& operator=(const Toasts&) = delete;
    // Lets the toast manager go, too.
    ~Toasts();

    // The document of every toast that was shown, in order (ToastXml.h).
    std::vector<std::string> shown() const;
    // What was done with toasts, in order: "Show 1", "Hide 1", "Activated 1 0" and so on.
    std::vector<std::string> events() const;

    const standin::NotificationStandinControl control = standin::NotificationStandinControl::inProcess();

private:
    TemporaryFolder folder;
    std::filesystem::path record = folder / "toasts.txt";
};

} // namespace brisk::testing
