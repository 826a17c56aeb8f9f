#pragma once

#include "tools/log/GameReader.h"
#include "tools/log/PassReader.h"
#include "tools/log/Session.h"
#include "tools/log/VerdictSink.h"

#include <cstddef>
#include <optional>
#include <string>

namespace brisk::logbook {

// Follows one run of the service through its lines.
class SessionReader {
public:
    // Decisions go to the sink at once; games wait in `games` until they are taken.
    SessionReader(VerdictSink& sink, std::uint64_t number, const LogLine& first);
    SessionReader(const SessionReader&) = delete;
    SessionReader& operator=(const SessionReader&) = delete;
    ~SessionReader() = default;

    void feed(const LogLine& line);
    // The log ends, or another run begins in its place.
    void close();

    bool isOver() const { return isClosed; }
    // Whether all that has come is about the command line.
    bool isBeforeStart() const { return phase == Phase::CommandLine && !isClosed; }
    // What a recording says in front of the session, or later within it.
    void takeHead(const std::string& name, const std::string& value);
    // Whether the line can stand where nothing but the start line, or lines about the command line, has come.
    static bool mayFollowStart(LineKind kind);
    // A game of this session is being handed over.
    void count(const Game& game);

    Session session;
    GameReader games;

private:
    enum class Phase { CommandLine, Start, Running };

    void addUnknown(ProvingLine line);
    void end(SessionEnd how);
    void finish(const LogLine& line);
    void fail(const LogLine& line);
    bool feedStart(const LogLine& line);
    void feedRunning(const LogLine& line);
    bool feedPass(const LogLine& line);
    void endPass();
    void setParameter(const LogLine& line);
    void learnSource(const LogLine& line);

    VerdictSink& output;
    Phase phase;
    bool isClosed = false;
    std::optional<PassReader> pass;
    bool isPassOpen = false;         // its handler's lines may still come
    std::size_t keptTitles = 0;      // of all passes
    std::optional<ProvingLine> last; // an unknown line: an error's text if nothing follows
    bool isLastWhole = false;
};

} // namespace brisk::logbook
