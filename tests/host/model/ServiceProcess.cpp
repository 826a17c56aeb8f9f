#include "host/model/ServiceProcess.h"

#include "app/BriskHost.h"
#include "app/Log.h"
#include "app/RunTimeParameters.h"
#include "host/simulation/Desktop.h"
#include "host/simulation/Handles.h"
#include "host/simulation/Processes.h"
#include "toast/ToastManager.h"
#include "tracking/Services.h"
#include "tracking/Tracking.h"

#include <memory>

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR commandLine, int showCommand);

namespace brisk::model::ServiceProcess {

namespace {

template <class Object>
void renew(Object& object) {
    std::destroy_at(&object);
    std::construct_at(&object);
}

} // namespace

int run(const std::string& commandLine) {
    std::string writable = commandLine;
    return WinMain(nullptr, nullptr, writable.data(), 0);
}

void forget() {
    ToastManager::instance()->cleanup();
    gfxInfo.reset();
    renew(titleManager());
    renew(processLog);
    trackingState = TrackingState::Idle;
    resetTrackingContext();
    NumberOfIntervalsForWarming = 120;
    NumberOfIntervalsForTracking = 30;
    NumberOfIntervalsForNotTracking = 120;
    NumberOfTrackingIntervalsToBeValid = 120;
    fpsOverride.reset();
    logToFile.reset();

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
