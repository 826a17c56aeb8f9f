#pragma once

#include <string>

namespace brisk::workbench {

// The location of a title, with placeholders, that a settings file of this absolute path has on every machine; empty
// where its path does not tell. The paths may be those of a Windows machine, of a Wine prefix or of a copied profile;
// the game's folder is that of its executable and may be empty. A folder that looks like an account's number becomes
// "*".
std::string guessLocation(const std::string& settingsFile, const std::string& gameFolder);

} // namespace brisk::workbench
