// Fault points of the simulated Windows, with the interface of tests/support/Faults.h: here every call already is one.
#pragma once

#include "host/simulation/SimulatedCall.h"

namespace brisk::faults {

template <class Function>
using FaultPoint = host::SimulatedCall<Function>;

// No call fails any more; all counts are zero.
inline void reset() {
    host::SimulatedCallBase::resetAll();
}

} // namespace brisk::faults

#define BRISK_FAULT_POINT(library, function) inline auto& function##Fault = brisk::host::simulatedCall<::function>;
