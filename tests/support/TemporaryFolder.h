#pragma once

#include "base/TextEncoding.h"

#include <atomic>
#include <filesystem>
#include <string>

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

} // namespace brisk::testing
