// The state that the product keeps for the whole process, except the log's and the toasts'.
#pragma once

#include "base/RunTimeParameters.h"
#include "tracking/Services.h"
#include "tracking/Tracking.h"

#include <memory>

namespace brisk::testing {

// A title manager keeps what it has loaded; this gives the process a new one.
inline void renewTitleManager() {
    TitleManager& manager = titleManager();
    std::destroy_at(&manager);
    std::construct_at(&manager);
}

// All of it is as in a new process.
inline void renewProcessState() {
    renewTitleManager();
    gfxInfo.reset();
    trackingState = TrackingState::Idle;
    resetTrackingContext();
    NumberOfIntervalsForWarming = 120;
    NumberOfIntervalsForTracking = 30;
    NumberOfIntervalsForNotTracking = 120;
    NumberOfTrackingIntervalsToBeValid = 120;
    fpsOverride.reset();
    logToFile.reset();
}

} // namespace brisk::testing
