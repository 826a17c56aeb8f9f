// The machine as the model knows it: plain data, changed by the test at the same time as the simulated Windows.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace brisk::model {

// The calls that a test lets fail.
enum class Fault : unsigned {
    CreateKey,
    OpenKey,
    OpenKeyEx,
    SetValue,
    QueryValue,
    DeleteValue,
    DeleteTree,
    OpenProcess,
    ExitCode,
    ModuleName,
    VersionSize,
    VersionRead,
    VersionQuery,
    ForegroundWindow,
    WindowProcess,
    IsWindow,
    SetTimer,
    Attributes,
    FindFirst,
    FindNext,
    DisplayDevice,
    DisplaySettings,
    Count
};
inline constexpr std::size_t kFaults = static_cast<std::size_t>(Fault::Count);

struct FaultPlan {
    enum class Mode { None, Once, Always, Random };
    Mode mode = Mode::None;
    std::uint64_t seed = 0;
    unsigned oneIn = 1;
    std::int32_t code = 0;
    unsigned calls = 0;
};

struct Process {
    std::string folder;
    std::string name;
    std::uint32_t exitCode = 259;
};

struct Mode {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t refreshRate = 0;
};

struct Display {
    std::string name;
    bool primary = true;
    Mode current;
    std::vector<Mode> modes;
};

struct File {
    std::string content;
    bool readOnly = false;
};

struct Value {
    std::uint32_t type = 0;
    std::string data;

    friend bool operator==(const Value&, const Value&) = default;
};

struct Key {
    std::map<std::string, Value> values;
    unsigned generation = 0; // of the key under this path; a deleted and re-made key is another one

    friend bool operator==(const Key&, const Key&) = default;
};

struct Environment {
    std::map<std::uint32_t, Process> processes;     // by id
    std::map<std::string, std::string> companies;   // by full path; those with a version resource
    std::map<std::uint64_t, std::uint32_t> windows; // process ids by window
    std::uint64_t foreground = 0;
    std::vector<Display> displays;
    std::optional<Mode> native; // as the scripted graphics information gives it; else the current mode
    std::uint32_t fps = 60;     // likewise
    std::set<std::string> folders;
    std::map<std::string, File> files;
    std::map<std::string, Key> currentUser; // by path; with every key all that lie above it
    std::map<std::string, Key> localMachine;
    unsigned nextGeneration = 1;
    bool canRead = true;
    bool canWrite = true;
    bool canShow = true;
    std::array<FaultPlan, kFaults> faults;

    // Counts one call, and whether it fails.
    bool fails(Fault fault);
    std::int32_t codeOf(Fault fault) const { return faults[static_cast<std::size_t>(fault)].code; }

    void makeKey(std::map<std::string, Key>& hive, const std::string& path);
    void makeFolder(const std::string& path);
};

} // namespace brisk::model
