#include "app/ServiceWindow.h"
#include "base/Executables.h"
#include "base/Log.h"
#include "base/RunTimeParameters.h"
#include "base/Version.h"
#include "gfx/CreateGfxInfo.h"
#include "state/UserState.h"
#include "toast/ToastManager.h"
#include "tracking/Services.h"

#include <exception>

#include <windows.h>

namespace {

using namespace brisk;

// The process's exit code.
int run(HINSTANCE instance, const char* commandLine) {
    parseParameters(commandLine);
    if (logToFile) {
        processLog.setFilePath(*logToFile);
    }
    logLine("Brisk ", kVersion, " : started");
    if (isServiceWindowPresent()) {
        logLine("Brisk : running already. Exiting.");
        return 1;
    }
    const bool titlesLoaded = titleManager().loadTitlesDatabase(getModuleDirectory());
    if (titlesLoaded) {
        logLine("Brisk : titles DB processed.");
    }
    const bool registryAccessible = isRegistryAccessible();
    logLine(registryAccessible ? "Brisk : access to the Windows Registry granted."
                               : "Brisk : access to the Windows Registry not granted.");
    gfxInfo = createGfxInfo();
    ToastManager::instance();
    // Without one of the three the service ends quietly, with 0 (docs/decisions/kept-behaviour.md).
    if (titlesLoaded && registryAccessible && gfxInfo) {
        runServiceWindow(instance);
    }
    logLine("Brisk : finished");
    return 0;
}

} // namespace

int WINAPI WinMain(HINSTANCE hInstance, HINSTANCE /*hPrevInstance*/, LPSTR lpCmdLine, int /*nShowCmd*/) {
    try {
        return run(hInstance, lpCmdLine);
    } catch (const std::exception& error) {
        logLine("Brisk : ", error.what());
        return 1;
    }
}
