#pragma once

#include "gfx/IGfxInfo.h"
#include "titles/TitleManager.h"
#include "toast/WinToastHandler.h"

#include <memory>
#include <string>
#include <vector>

namespace brisk {

// What start-up prepares for the handlers of host messages, process-wide.

// The title database's owner, made on first use and never destroyed.
TitleManager& titleManager();

// Set once by start-up; empty when no graphics information is available, and then no window exists. Window thread.
extern std::shared_ptr<IGfxInfo> gfxInfo;

// The source of every toast's logo. Empty and never assigned: a build that wants a logo sets an image file's path.
extern std::string& toastImagePath;

// Hide all of the service's toasts; show one more. Any thread.
void clearToasts();
void showToast(const std::string& title, const std::string& subtitle, const std::string& body,
               const std::vector<ToastAction>& actions);

} // namespace brisk
