#pragma once

#include "tools/log/LogReader.h"
#include "tools/log/Selection.h"
#include "tools/log/VerdictSink.h"

#include <ostream>
#include <string>

namespace brisk::logbook {

// What a log tells, printed as it is read. One log after the other: beginLog, its verdicts, endLog.
class WhyOutput : public VerdictSink {
public:
    // The options' database is null where none was given. Everything has to outlive the output.
    WhyOutput(std::ostream& stream, const Selection& wanted, const DatabaseFacts* facts)
        : out(stream), selection(wanted), database(facts) {}

    void beginLog(const std::string& path) { log = path; }
    virtual void endLog(const LogReader& reader) = 0;
    virtual void finish() = 0;

    void onGame(const Session& session, const Game& game) final;
    void onSession(const Session& session) final;

    std::uint64_t offers = 0; // among what is wanted

protected:
    virtual void printGame(const Session& session, const Game& game) = 0;
    virtual void printSession(const Session& session) = 0;
    void print(const std::string& text) { out << text; }

    std::string log;
    const DatabaseFacts* facts() const { return database; }

private:
    std::ostream& out;
    const Selection& selection;
    const DatabaseFacts* database;
};

} // namespace brisk::logbook
