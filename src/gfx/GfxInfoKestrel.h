#pragma once

#include "base/WindowsHandles.h"
#include "gfx/GfxInfoImpl.h"
#include "gfx/KestrelHelper.h"

namespace brisk {

// The vendor's device library: measured frame rates and the primary display's native mode.
class GfxInfoKestrel final : public GfxInfoImpl {
public:
    // Not initialised, with a log line, when the library is missing or does not start.
    GfxInfoKestrel();
    ~GfxInfoKestrel() override;

    std::uint32_t getCurrentFps() override;
    DisplayInfo getNativeDisplayInfo() override;

private:
    KestrelHelper helper;
    ComReference<kestrel::IPerformanceMonitoringServices> performanceMonitoring; // released before the helper goes
    bool libraryInitialized = false;
};

} // namespace brisk
