#include "host/simulation/Findings.h"

#include "host/simulation/Desktop.h"
#include "host/simulation/Files.h"
#include "host/simulation/Handles.h"
#include "host/simulation/Processes.h"
#include "host/simulation/Registry.h"
#include "host/simulation/SimulatedCall.h"
#include "host/simulation/System.h"
#include "host/simulation/Toasts.h"

#include <utility>

namespace brisk::host {

namespace {

std::vector<std::string> findings;
thread_local DWORD lastError = ERROR_SUCCESS;

} // namespace

std::recursive_mutex& modelMutex() {
    static std::recursive_mutex mutex;
    return mutex;
}

void addFinding(const std::string& finding) {
    const std::lock_guard lock(modelMutex());
    findings.push_back(finding);
}

std::vector<std::string> takeFindings() {
    const std::lock_guard lock(modelMutex());
    return std::exchange(findings, {});
}

void resetSimulation() {
    SimulatedCallBase::resetAll();
    desktop() = {};
    processes() = {};
    registry() = {};
    simulatedSystem() = {};
    notificationArea() = {};
    handles() = {};
    fileOpening() = {};
    findings.clear();
    SetLastError(ERROR_SUCCESS);
}

} // namespace brisk::host

DWORD GetLastError() {
    return brisk::host::lastError;
}

void SetLastError(DWORD error) {
    brisk::host::lastError = error;
}
