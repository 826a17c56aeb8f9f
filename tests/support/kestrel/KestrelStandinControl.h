// Gives a test the stand-in for the vendor's device library: in the test's own process or in a service that it starts.
#pragma once

#include "support/Sandbox.h"
#include "support/kestrel/KestrelStandin.h"

#include <filesystem>
#include <string>
#include <vector>

namespace brisk::kestrelstandin {

// The folder of the stand-in that has everything.
std::filesystem::path kestrelFolder();
// The folder of the one that lacks an entry point, for example "KestrelTerminate". Throws std::invalid_argument for
// other names.
std::filesystem::path kestrelFolderWithout(const std::string& entryPoint);
// Copies the library from such a folder beside a program, whose processes find it then.
void installKestrel(const std::filesystem::path& programFolder, const std::filesystem::path& from = kestrelFolder());

// A script and a record, and the environment variables that name them, which processes started meanwhile inherit. One
// at a time.
class KestrelStandin {
public:
    explicit KestrelStandin(const std::string& script = kOneDisplay);
    KestrelStandin(const KestrelStandin&) = delete;
    KestrelStandin& operator=(const KestrelStandin&) = delete;
    ~KestrelStandin();

    // For the next time that the library is loaded.
    void setScript(const std::string& script);

    // The record's lines since the last call.
    std::vector<std::string> takeRecord();

private:
    testing::TemporaryFolder folder;
};

// While it lives, this process finds the library in the folder. It can be loaded about a thousand times: each time
// costs a thread-local slot of the process, which the DLL's static runtime does not give back.
class KestrelInThisProcess {
public:
    explicit KestrelInThisProcess(const std::filesystem::path& folder = kestrelFolder());
    KestrelInThisProcess(const KestrelInThisProcess&) = delete;
    KestrelInThisProcess& operator=(const KestrelInThisProcess&) = delete;
    ~KestrelInThisProcess();

    static bool isLoaded();
    // References that somebody holds. The library must be loaded.
    static unsigned liveReferences();

private:
    DLL_DIRECTORY_COOKIE cookie;
};

} // namespace brisk::kestrelstandin
