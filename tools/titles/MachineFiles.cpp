#include "tools/titles/MachineFiles.h"

#include "base/TextEncoding.h"
#include "titles/ConfigFiles.h"
#include "tools/console/Files.h"
#include "tools/titles/MachineRegistry.h"

#include <algorithm>
#include <filesystem>
#include <optional>

#include <windows.h>

namespace brisk::workbench {

namespace {

namespace fs = std::filesystem;

// Told by what there is: opening a file to write it would empty it.
bool isWritable(const fs::path& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES) {
        return (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) == 0;
    }
    std::error_code error;
    return fs::is_directory(path.parent_path(), error) &&
           path.filename().native().find_first_of(L"*?") == std::wstring::npos;
}

} // namespace

bool hasMachineFiles() {
    return true;
}

UserFolders machineFolders() {
    return findUserFolders();
}

FileSource machineFiles() {
    return {{resolveWildcard, locationExists}, [](const std::string& location) {
                PreviewFile file{location, false, false, {}, toPath(location)};
                file.isWritable = isWritable(file.real);
                if (std::optional<std::string> bytes = readFile(location)) {
                    file.isReadable = true;
                    file.bytes = std::move(*bytes);
                }
                return file;
            }};
}

RegistryKeys machineKeys(const std::vector<std::string>& locations) {
    RegistryKeys keys;
    for (std::string path : locations) {
        std::replace(path.begin(), path.end(), '/', '\\');
        while (path.ends_with('\\')) {
            path.pop_back();
        }
        readRegistryKey(path, keys);
    }
    return keys;
}

} // namespace brisk::workbench
