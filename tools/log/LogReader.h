#pragma once

#include "tools/log/LineReader.h"
#include "tools/log/Redaction.h"
#include "tools/log/SessionReader.h"

#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brisk::logbook {

// Reads a log of any length in one go and with little memory: takes its bytes as they come, hands over sessions and
// games as soon as their stories are over. It holds what still goes on, and what has to wait for it.
class LogReader final : public ByteSink {
public:
    // Sessions are numbered on behind the ones of earlier logs. A redaction, which may be null, is applied to each line
    // before anything else is made of it. Sink and redaction have to outlive the reader.
    explicit LogReader(VerdictSink& sink, std::uint64_t sessionsBefore = 0, const Redaction* hider = nullptr);

    void feed(std::string_view bytes) override { lines.feed(bytes); }
    void finish() override;

    std::uint64_t sessionCount() const { return sessions; }
    // Starts of a second service that were left out, for there were too many while the first one ran.
    std::uint64_t omittedSessions() const { return omitted; }
    std::uint64_t lineCount() const { return lines.count(); }
    // The first lines that belong to no session, and how many there are.
    const std::vector<ProvingLine>& strayLines() const { return strays; }
    std::uint64_t strayCount() const { return straysCount; }

private:
    struct Run {
        Run(VerdictSink& sink, std::uint64_t number, const LogLine& line, Run* found)
            : reader(sink, number, line), interrupted(found) {}

        SessionReader reader;
        Run* interrupted; // the one that this start may find running
    };

    void takePiece(const LogLine& line);
    void takeHead(const LogLine& line);
    void takeOther(const LogLine& line);
    Run* find(std::optional<std::uint32_t> processId);
    Run& begin(const LogLine& line, Run* interrupted);
    void feedRun(Run& run, const LogLine& line);
    void handOver();
    void limitWaiting();

    VerdictSink& output;
    const Redaction* redaction;
    LineReader lines;
    LineSplitter splitter;
    std::uint64_t sessions;
    std::uint64_t omitted = 0;
    std::vector<ProvingLine> strays;
    std::uint64_t straysCount = 0;
    std::vector<std::pair<std::string, std::string>> head;
    std::list<Run> runs; // in the order of their starts; the first one's games go out at once
    Run* current = nullptr;
};

} // namespace brisk::logbook
