#include "tools/log/LogReader.h"

#include <algorithm>

namespace brisk::logbook {

namespace {

constexpr std::size_t kMaximumStrays = 20;
constexpr std::size_t kMaximumHead = 2000; // facts
// Of sessions that wait for an earlier one's end, and of games that wait for an earlier one's answer.
constexpr std::size_t kMaximumWaiting = 200;

// Lines that do not tell yet whether a start finds another service running.
bool isUndecided(LineKind kind) {
    return kind == LineKind::Unknown || kind == LineKind::FirstParameter || kind == LineKind::Parameter ||
           kind == LineKind::ParameterSet || kind == LineKind::Started;
}

} // namespace

LogReader::LogReader(VerdictSink& sink, std::uint64_t sessionsBefore, const Redaction* hider)
    : output(sink), redaction(hider), lines([this](std::string_view text, std::uint64_t number, bool isWhole) {
          const std::string redacted = redaction ? redaction->apply(text) : std::string();
          splitter.split(redaction ? redacted : text, number, isWhole, [this](const LogLine& line) {
              takePiece(line);
              if (!runs.empty()) {
                  handOver();
              }
          });
      }),
      sessions(sessionsBefore) {}

void LogReader::finish() {
    lines.finish();
    for (Run& run : runs) {
        run.reader.close();
    }
    handOver();
}

void LogReader::takePiece(const LogLine& line) {
    switch (line.kind) {
    case LineKind::Head:
        takeHead(line);
        return;
    case LineKind::Foreign:
        takeOther(line);
        return;
    case LineKind::FirstParameter:
        begin(line, find(line.processId)).reader.feed(line);
        return;
    case LineKind::Started: {
        Run* run = find(line.processId);
        feedRun(run && run->reader.isBeforeStart() ? *run : begin(line, run), line);
        return;
    }
    case LineKind::Unknown:
        if (!find(line.processId)) {
            takeOther(line);
            return;
        }
        [[fallthrough]];
    default:
        Run* run = find(line.processId);
        feedRun(run ? *run : begin(line, nullptr), line);
    }
}

void LogReader::takeHead(const LogLine& line) {
    const std::size_t colon = line.value.find(": ");
    if (colon == std::string_view::npos) {
        takeOther(line);
        return;
    }
    std::string name(line.value.substr(0, colon));
    std::string value(line.value.substr(colon + 2));
    // A warning belongs where it stands: to the head, or to the session that is being recorded.
    if (name == "warning" && head.empty()) {
        const auto open = std::find_if(runs.rbegin(), runs.rend(), [](const Run& run) { return !run.reader.isOver(); });
        open == runs.rend() ? takeOther(line) : open->reader.takeHead(name, value);
    } else if (head.size() < kMaximumHead) {
        head.emplace_back(std::move(name), std::move(value));
    }
}

// A line that is not the service's.
void LogReader::takeOther(const LogLine& line) {
    Run* run = current && !current->reader.isOver() ? current : nullptr;
    const bool isCapture = line.processId || (run && run->reader.session.processId);
    if (isCapture) {
        return; // what other processes write is no matter
    }
    if (run) {
        run->reader.feed(line);
        return;
    }
    ++straysCount;
    if (strays.size() < kMaximumStrays) {
        strays.push_back(toProvingLine(line));
    }
}

LogReader::Run* LogReader::find(std::optional<std::uint32_t> processId) {
    if (current && !current->reader.isOver() && current->reader.session.processId == processId) {
        return current;
    }
    const auto last = std::find_if(runs.rbegin(), runs.rend(), [processId](const Run& run) {
        return !run.reader.isOver() && run.reader.session.processId == processId;
    });
    if (last == runs.rend()) {
        return nullptr;
    }
    current = &*last;
    return current;
}

LogReader::Run& LogReader::begin(const LogLine& line, Run* interrupted) {
    Run& run = runs.emplace_back(output, ++sessions, line, interrupted);
    for (const auto& [name, value] : head) {
        run.reader.takeHead(name, value);
    }
    head.clear();
    current = &run;
    return run;
}

void LogReader::feedRun(Run& run, const LogLine& line) {
    // While nothing but its start line has come, the lines of the one before go on.
    if (run.interrupted && !run.interrupted->reader.isOver() && !SessionReader::mayFollowStart(line.kind)) {
        feedRun(*run.interrupted, line);
        return;
    }
    if (run.interrupted && !isUndecided(line.kind)) {
        // Only a service that finds another one leaves that one running.
        const bool isSecond =
            line.kind == LineKind::RunningAlready || (line.kind == LineKind::Error && run.reader.isBeforeStart());
        for (Run* other = run.interrupted; other && !isSecond; other = other->interrupted) {
            other->reader.close();
        }
        run.interrupted = nullptr;
    }
    run.reader.feed(line);
}

void LogReader::handOver() {
    while (!runs.empty()) {
        SessionReader& first = runs.front().reader;
        while (first.games.hasReady()) {
            const Game game = first.games.takeReady();
            first.count(game);
            output.onGame(first.session, game);
        }
        if (!first.isOver()) {
            break;
        }
        output.onSession(first.session);
        for (Run& run : runs) {
            if (run.interrupted == &runs.front()) {
                run.interrupted = nullptr;
            }
        }
        if (current == &runs.front()) {
            current = nullptr;
        }
        runs.pop_front();
    }
    limitWaiting();
}

void LogReader::limitWaiting() {
    if (runs.empty()) {
        return;
    }
    for (Run& run : runs) {
        if (run.reader.games.keptCount() > kMaximumWaiting) {
            run.reader.games.giveUpFirst();
        }
    }
    const Run& last = runs.back();
    if (runs.size() > kMaximumWaiting && last.reader.isOver() &&
        last.reader.session.end == SessionEnd::RunningAlready) {
        ++omitted;
        if (current == &last) {
            current = nullptr;
        }
        runs.pop_back();
    } else if (runs.size() > kMaximumWaiting ||
               (runs.size() > 1 && runs.back().reader.games.keptCount() > kMaximumWaiting)) {
        // A first one that never ends has been killed.
        runs.front().reader.close();
    }
}

} // namespace brisk::logbook
