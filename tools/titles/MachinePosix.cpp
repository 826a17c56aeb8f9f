// Where there is no Windows, there is no player's machine to look at.
#include "tools/titles/GoldenService.h"
#include "tools/titles/MachineDisplay.h"
#include "tools/titles/MachineFiles.h"

#include <stdexcept>

namespace brisk::workbench {

std::optional<Display> machineDisplay() {
    return std::nullopt;
}

bool hasMachineFiles() {
    return false;
}

UserFolders machineFolders() {
    return {};
}

FileSource machineFiles() {
    return {};
}

RegistryKeys machineKeys(const std::vector<std::string>& /*locations*/) {
    return {};
}

ServiceTrial serviceTrial(const std::string& /*executable*/) {
    throw std::runtime_error("--with-service needs Windows: run brisktitles.exe, there or under Wine");
}

} // namespace brisk::workbench
