#pragma once

#include "titles/ConfigLocation.h"
#include "tools/titles/RegistryExport.h"
#include "tools/titles/TextPreviewAdapter.h"

namespace brisk::workbench {

// The player's folders, files and registry of this machine, as the service finds them. Only read from. Where there is
// no Windows there are none.

// Whether there are any.
bool hasMachineFiles();

UserFolders machineFolders();

FileSource machineFiles();

// The keys at these locations, "HKEY_CURRENT_USER/Software/...", as far as they can be read.
RegistryKeys machineKeys(const std::vector<std::string>& locations);

} // namespace brisk::workbench
