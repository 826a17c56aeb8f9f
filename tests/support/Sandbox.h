// What tests of the real Windows API stand on: a folder and a registry hive of their own, and the log's lines.
#pragma once

#include "app/Log.h"
#include "app/TextEncoding.h"
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

namespace brisk::testing {

// A new folder, removed with all it holds.
class TemporaryFolder {
public:
    TemporaryFolder() {
        static std::atomic<unsigned> number = 0;
        // An earlier process of the same id may have left a folder behind.
        do {
            folder = std::filesystem::temp_directory_path() /
                     (L"brisk-test-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++number));
        } while (!std::filesystem::create_directories(folder));
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

    const std::filesystem::path& path() const { return folder; }
    // In the process code page, as the service takes paths.
    std::string narrow() const { return toNarrow(folder); }
    std::filesystem::path operator/(const std::filesystem::path& name) const { return folder / name; }

private:
    std::filesystem::path folder;
};

// Sends the process's log to a file while it lives, and gives its lines. The log's number base is decimal at first.
class CapturedLog {
public:
    CapturedLog() {
        processLog.text(std::dec, std::noshowbase);
        processLog.setFilePath(toNarrow(file()));
    }
    CapturedLog(const CapturedLog&) = delete;
    CapturedLog& operator=(const CapturedLog&) = delete;
    ~CapturedLog() { processLog.setFilePath({}); }

    // The lines since the last call, without their ends.
    std::vector<std::string> take() {
        if (!std::filesystem::exists(file())) {
            return {};
        }
        const std::vector<std::string> lines = splitLines(readFile(file()));
        std::filesystem::remove(file());
        return lines;
    }

private:
    std::filesystem::path file() const { return folder / "brisk.log"; }

    TemporaryFolder folder;
};

// Moves HKEY_CURRENT_USER of this process into an empty key while it lives.
class SandboxHive {
public:
    SandboxHive() {
        RegDeleteTreeA(HKEY_CURRENT_USER, kKey);
        HKEY key = nullptr;
        if (RegCreateKeyExA(HKEY_CURRENT_USER, kKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr) != 0 ||
            RegOverridePredefKey(HKEY_CURRENT_USER, key) != 0) {
            throw std::runtime_error("no sandbox hive");
        }
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
