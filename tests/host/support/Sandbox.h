// What unit tests stand on, with the interface of tests/support/Sandbox.h: a folder on a simulated drive, a registry of
// their own, and the log's lines.
#pragma once

#include "app/Log.h"
#include "app/TextEncoding.h"
#include "host/simulation/Files.h"
#include "support/TextFiles.h"

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

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

// Sends the process's log to a file while it lives, and gives its lines. The log's number base is decimal at first.
class CapturedLog {
public:
    CapturedLog() {
        processLog.text(std::dec, std::noshowbase);
        processLog.setFilePath(folder.narrow() + "\\brisk.log");
    }
    CapturedLog(const CapturedLog&) = delete;
    CapturedLog& operator=(const CapturedLog&) = delete;
    ~CapturedLog() { processLog.setFilePath({}); }

    // The lines since the last call, without their ends.
    std::vector<std::string> take() {
        const std::filesystem::path file = folder / "brisk.log";
        if (!std::filesystem::exists(file)) {
            return {};
        }
        const std::vector<std::string> lines = splitLines(readFile(file));
        std::filesystem::remove(file);
        return lines;
    }

private:
    TemporaryFolder folder;
};

// Moves HKEY_CURRENT_USER of this process into an empty key while it lives.
class SandboxHive {
public:
    SandboxHive() {
        HKEY key = nullptr;
        RegDeleteTreeA(HKEY_CURRENT_USER, kKey);
        RegCreateKeyA(HKEY_CURRENT_USER, kKey, &key);
        RegOverridePredefKey(HKEY_CURRENT_USER, key);
        RegCloseKey(key);
    }
    SandboxHive(const SandboxHive&) = delete;
    SandboxHive& operator=(const SandboxHive&) = delete;
    ~SandboxHive() {
        RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
        RegDeleteTreeA(HKEY_CURRENT_USER, kKey);
    }

private:
    static constexpr char kKey[] = "Software\\brisk-test-hive";
};

} // namespace brisk::testing
