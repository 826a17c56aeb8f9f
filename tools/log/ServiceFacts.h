#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace brisk::logbook {

// What can be seen of a running service from outside. Texts are UTF-8, and empty where Windows does not tell.
struct ServiceFacts {
    std::uint32_t processId = 0;
    std::string path;
    std::string commandLine;
    std::string fileVersion;
    std::string databasePath;            // where the service looks for it
    std::optional<std::string> database; // its bytes; nothing where it cannot be read
    std::size_t titles = 0;
};

// The process of the service's window; nothing where there is none.
std::optional<std::uint32_t> findServiceProcess();

ServiceFacts readServiceFacts(std::uint32_t processId);

} // namespace brisk::logbook
