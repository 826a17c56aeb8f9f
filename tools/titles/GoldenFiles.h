#pragma once

#include "tools/titles/RegistryExport.h"

#include <filesystem>
#include <map>
#include <string>

namespace brisk::workbench {

// The files of a case by their path below its folder, with slashes: "profile/AppData/Local/...", "game/...",
// "registry.reg". Letter case does not matter, as on Windows.
using GoldenFiles = std::map<std::string, std::string, IgnoringCase>;

constexpr char kRegistryFile[] = "registry.reg";

// A path's text as the project's narrow text, with slashes.
std::string narrowPath(const std::filesystem::path& path);

// Every file below the folder; none where there is no folder. Throws std::runtime_error when one cannot be read.
GoldenFiles readFiles(const std::string& folder);

// Writes each file, with its folders. Throws std::runtime_error when one cannot be written.
void writeFiles(const std::string& folder, const GoldenFiles& files);

// The files that `now` has otherwise than `before`, or that `before` has not.
GoldenFiles changedFiles(const GoldenFiles& before, const GoldenFiles& now);

// `before` with the files of `after` in place of its own.
GoldenFiles overlaid(GoldenFiles before, const GoldenFiles& after);

// What differs, file by file, as unified diffs with their heads; "" when nothing does.
std::string diffFiles(const GoldenFiles& expected, const GoldenFiles& actual);

// An exported registry file's keys, in the form in which all exports of the same values are equal; text that is none
// stays as it is.
std::string normalizedExport(const std::string& bytes);

// An export of these keys. Windows can import it.
std::string exportOf(const RegistryKeys& keys);

} // namespace brisk::workbench
