// A folder on a simulated drive, with the interface of tests/support/TemporaryFolder.h, and what tests need for its
// path.
#pragma once

#include "base/TextEncoding.h"
#include "host/simulation/Files.h"

#include <atomic>
#include <filesystem>
#include <string>

#include <windows.h>

namespace brisk {

// Here a path is this machine's, and its narrow text Windows'.
inline std::string toNarrow(const std::filesystem::path& path) {
    return host::onWindows(path);
}

// Windows' calls as tests make them, with the path's own narrow characters.
inline HANDLE CreateFileW(const char* path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security, DWORD disposition,
                          DWORD flags, HANDLE pattern) {
    return ::CreateFileW(toWide(path).c_str(), access, share, security, disposition, flags, pattern);
}
inline BOOL SetFileAttributesW(const char* /*path*/, DWORD /*attributes*/) {
    return TRUE;
}

} // namespace brisk

namespace brisk::testing {

// A new folder, removed with all it holds.
class TemporaryFolder {
public:
    TemporaryFolder() {
        static std::atomic<unsigned> number = 0;
        windowsPath = "C:\\Temp\\brisk-test-" + std::to_string(++number);
        folder = host::onThisMachine(windowsPath);
        std::filesystem::create_directories(folder);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

    // This machine's path.
    const std::filesystem::path& path() const { return folder; }
    // Windows' path, as the service takes it.
    std::string narrow() const { return windowsPath; }
    std::filesystem::path operator/(const std::filesystem::path& name) const { return folder / name; }

private:
    std::string windowsPath;
    std::filesystem::path folder;
};

} // namespace brisk::testing
