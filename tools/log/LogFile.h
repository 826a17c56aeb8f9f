#pragma once

#include "tools/log/LineReader.h"
#include "tools/log/Redaction.h"

#include <optional>
#include <string>
#include <utility>

namespace brisk::logbook {

// A log, or the standard input where the path is "-". Paths are UTF-8.
class LogFile {
public:
    // What is to be read several times is kept in memory where it is the standard input.
    LogFile(std::string path, bool isReadAgain) : name(std::move(path)), isKept(isReadAgain && isStandardInput()) {}

    const std::string& path() const { return name; }
    bool isStandardInput() const { return name == "-"; }
    // Reads it to its end, a block at a time. False when it cannot be read; something may have been fed then.
    bool read(ByteSink& sink);

private:
    std::string name;
    bool isKept;
    std::optional<std::string> kept;
};

// Learns the users' names in a log, and in its path.
void learnNames(LogFile& log, Redaction& redaction);

} // namespace brisk::logbook
