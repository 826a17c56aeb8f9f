#pragma once

#include "tools/log/JsonWriter.h"
#include "tools/log/WhyOutput.h"

#include <string>
#include <vector>

namespace brisk::logbook {

// One document, {"sessions": [...], ...}, written as the logs are read.
class WhyJson final : public WhyOutput {
public:
    using WhyOutput::WhyOutput;

    void endLog(const LogReader& reader) override;
    void finish() override;

protected:
    void printGame(const Session& session, const Game& game) override;
    void printSession(const Session& session) override;

private:
    struct Log {
        std::string path;
        std::uint64_t lines;
        std::uint64_t strays;
        std::uint64_t omittedSessions;
    };

    void open(const Session& session);
    void openDocument();

    JsonWriter json;
    bool isDocumentOpen = false;
    bool isOpen = false; // a session's object and its games' array
    std::vector<Log> logs;
};

// A game as an object. The database may be null.
void write(JsonWriter& json, const Session& session, const Game& game, const DatabaseFacts* database);
// A session's members besides its games, without brackets.
void writeMembers(JsonWriter& json, const Session& session);

} // namespace brisk::logbook
