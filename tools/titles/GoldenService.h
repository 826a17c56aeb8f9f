#pragma once

#include "tools/titles/GoldenTest.h"

#include <string>

namespace brisk::workbench {

// Tries cases with the real service, this executable: it is started in a folder of its own, with the case's files there
// instead of the player's, and with a registry key of its own. What the service remembers of the player is put back.
// It takes this machine's display, and so does the preview that it is compared with. Throws std::runtime_error where
// there is no Windows, or where a service runs already.
ServiceTrial serviceTrial(const std::string& executable);

} // namespace brisk::workbench
