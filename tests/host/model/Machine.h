// Changes the machine on both sides at once: in the simulated Windows and in the model's environment.
#pragma once

#include "host/model/Environment.h"
#include "host/model/Random.h"
#include "host/model/Titles.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include <windows.h>

namespace brisk::model {

class Machine {
public:
    static constexpr unsigned kSlots = 4;

    // A new machine with empty drives and registry, and the service installed.
    Machine(Random& random, const std::vector<Title>& titles);

    void launch(std::uint64_t slot, std::uint64_t title, std::uint64_t how);
    void endProcess(std::uint64_t slot, std::uint64_t how);
    void bringToForeground(std::uint64_t slot, std::uint64_t how);
    void setCompany(std::uint64_t title, std::uint64_t which);
    void install(std::uint64_t title, std::uint64_t seed);
    void writeFile(std::uint64_t title, std::uint64_t seed);
    void removeFile(std::uint64_t title, std::uint64_t which);
    void lockFile(std::uint64_t title, std::uint64_t which);
    void setSaveFolders(std::uint64_t title, std::uint64_t which);
    void writeValue(std::uint64_t title, std::uint64_t seed);
    void removeKey(std::uint64_t title);
    void setUserState(std::uint64_t which, std::uint64_t seed);
    void setDisplays(std::uint64_t seed);
    void setFps(std::uint64_t seed);
    void breakCall(std::uint64_t which, std::uint64_t how);
    void mendCalls();
    void breakFiles(std::uint64_t which);
    void breakToasts(std::uint64_t which);

    // The id of the process in a slot, and the number of the title that runs in it.
    std::uint32_t processOf(std::uint64_t slot) const { return slots[slot % kSlots].process; }
    std::uint64_t titleOf(std::uint64_t slot) const { return slots[slot % kSlots].title; }

    // Empty when the registry and the drives are as the environment has them. Looks only when something may have
    // changed: drives change by files that the service opens for writing.
    std::string compareRegistry();
    std::string compareFiles();

    Environment environment;

private:
    struct Slot {
        std::uint32_t process = 0;
        std::uint64_t title = 0;
        HWND window = nullptr;
    };

    void putFile(const std::string& path, const File& file);
    void makeFolder(const std::string& path);

    std::array<Slot, kSlots> slots;
    std::uint32_t nextProcess = 1000;
    bool registryTouched = true;
    std::uint64_t comparedRegistry = 0;
    unsigned comparedWrites = 0;
};

} // namespace brisk::model
