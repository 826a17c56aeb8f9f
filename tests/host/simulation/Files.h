// The simulated drives: folders "C:", "D:", ... of a temporary folder of this machine. All files that the program opens
// by a Windows path, the standard library's streams included, lie there.
#pragma once

#include <filesystem>
#include <string>

namespace brisk::host {

// This machine's path for a Windows path; a path without drive or backslash is this machine's own and stays.
std::filesystem::path onThisMachine(const std::string& windowsPath);

// The reverse.
std::string onWindows(const std::filesystem::path& path);

// All drives are empty.
void clearDrives();

// The opening of files by the standard library's streams.
struct FileOpening {
    bool canRead = true;
    bool canWrite = true;
    unsigned writes = 0; // files opened for writing so far
};
FileOpening& fileOpening();

} // namespace brisk::host
