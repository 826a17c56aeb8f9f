// What a program must never do with Windows and the models saw it do: using or closing a closed handle, waiting for
// ever. Tests fail on any.
#pragma once

#include <string>
#include <vector>

namespace brisk::host {

void addFinding(const std::string& finding);
// All so far; there are none afterwards.
std::vector<std::string> takeFindings();

// Everything is as after the start of a process on a new machine: empty registry, no windows, no open handles.
// The simulated drives stay.
void resetSimulation();

} // namespace brisk::host
