// What tests stand on: a folder and a registry hive of their own, and the log's lines.
#pragma once

#include "base/Log.h"
#include "support/TemporaryFolder.h"
#include "support/TextFiles.h"

#include <filesystem>
#include <stdexcept>

#include <windows.h>

namespace brisk::testing {

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
    Lines take() {
        const std::filesystem::path file = folder / "brisk.log";
        if (!std::filesystem::exists(file)) {
            return {};
        }
        Lines lines = splitLines(readFile(file));
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
