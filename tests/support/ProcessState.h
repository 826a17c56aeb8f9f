// The state that the product keeps for the whole process, except the log's and the toasts'.
#pragma once

#include "support/ExpectedParameters.h"
#include "toast/ButtonPresses.h"
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
    std::destroy_at(&buttonPresses());
    std::construct_at(&buttonPresses());
    gfxInfo.reset();
    trackingState = TrackingState::Idle;
    resetTrackingContext();
    resetParameters();
}

} // namespace brisk::testing
