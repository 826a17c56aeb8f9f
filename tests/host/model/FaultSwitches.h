// The faults of the model's environment at the calls of the simulated Windows.
#pragma once

#include "host/model/Environment.h"

namespace brisk::model {

// Makes the call fail as the plan says, from its next call on; Mode::None mends it.
void setSwitch(Fault fault, const FaultPlan& plan);

// One of the error codes that the fault may come with.
std::int32_t codeFor(Fault fault, std::uint64_t choice);

} // namespace brisk::model
