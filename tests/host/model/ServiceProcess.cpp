#include "host/model/ServiceProcess.h"

#include "BriskHost.h"
#include "base/Log.h"
#include "host/simulation/Desktop.h"
#include "host/simulation/Handles.h"
#include "host/simulation/Processes.h"
#include "support/ProcessState.h"
#include "toast/ToastManager.h"

#include <memory>

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR commandLine, int showCommand);

namespace brisk::model::ServiceProcess {

int run(const std::string& commandLine) {
    std::string writable = commandLine;
    return WinMain(nullptr, nullptr, writable.data(), 0);
}

void forget() {
    ToastManager::instance()->cleanup();
    testing::renewProcessState();
    std::destroy_at(&processLog);
    std::construct_at(&processLog);

    host::Desktop& desktop = host::desktop();
    desktop.classes.clear();
    std::erase_if(desktop.windows, [](const auto& each) { return each.second.className == BRISK_WINDOW_CLASS; });
    desktop.timers.clear();
    desktop.queue.clear();
    desktop.quitPosted = false;
    desktop.defaultHandled.clear();
    host::processes().lateExitCodes = 0;
    host::handles() = {};
}

} // namespace brisk::model::ServiceProcess
