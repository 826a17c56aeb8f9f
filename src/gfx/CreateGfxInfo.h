#pragma once

#include "gfx/IGfxInfo.h"

#include <memory>

namespace brisk {

// The vendor's device library where it works, the operating system otherwise; empty, with a log line, when neither
// does.
std::shared_ptr<IGfxInfo> createGfxInfo();

} // namespace brisk
