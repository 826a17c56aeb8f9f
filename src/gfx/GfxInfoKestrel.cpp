#include "gfx/GfxInfoKestrel.h"

#include "base/Log.h"
#include "gfx/KestrelDisplay.h"

namespace brisk {

GfxInfoKestrel::GfxInfoKestrel() {
    logLine("Brisk : initializing GfxInfoKestrel.");
    logLine("Brisk : initializing Kestrel.");
    if (!kestrel::succeeded(helper.initialize())) {
        logLine("Brisk : failed to initialize Kestrel.");
        return;
    }
    libraryInitialized = true;
    logLine("Brisk : Kestrel initialized.");
    logLine("Brisk : get Kestrel performance monitoring services.");
    kestrel::ISystemServices* system = helper.getSystemServices();
    if (!system || !kestrel::succeeded(system->GetPerformanceMonitoringServices(performanceMonitoring.receive())) ||
        !performanceMonitoring) {
        logLine("Brisk : failed to get Kestrel performance monitoring services.");
        return;
    }
    logLine("Brisk : Kestrel performance monitoring services acquired.");
    initialized = true;
}

GfxInfoKestrel::~GfxInfoKestrel() {
    if (libraryInitialized) {
        performanceMonitoring = {};
        helper.terminate();
    }
}

std::uint32_t GfxInfoKestrel::getCurrentFps() {
    ComReference<kestrel::IFps> fps;
    if (!performanceMonitoring || !kestrel::succeeded(performanceMonitoring->GetCurrentFps(fps.receive())) || !fps) {
        logLine("Brisk : failed to get current FPS from Kestrel.");
        return 0;
    }
    std::int32_t framesPerSecond = 0;
    if (!kestrel::succeeded(fps->GetFps(&framesPerSecond))) {
        logLine("Brisk : failed to get FPS data from Kestrel.");
        return 0;
    }
    return static_cast<std::uint32_t>(framesPerSecond);
}

DisplayInfo GfxInfoKestrel::getNativeDisplayInfo() {
    return readNativeMode(helper.getSystemServices());
}

} // namespace brisk
