#include "tools/log/SessionReader.h"

#include "tools/log/LineTable.h"
#include "tools/log/LineValues.h"
#include "tools/log/Parameters.h"

#include "base/ParameterPatterns.h"

#include <algorithm>
#include <utility>

namespace brisk::logbook {

namespace {

constexpr std::size_t kMaximumUnknownLines = 20;
constexpr std::size_t kMaximumPasses = 200;
constexpr std::size_t kMaximumTitles = 1000; // of all passes
constexpr std::size_t kMaximumHead = 2000;
constexpr std::string_view kFront = "Brisk : ";

std::string_view withoutFront(std::string_view text) {
    return text.starts_with(kFront) ? text.substr(kFront.size()) : text;
}

bool isOfCommandLine(LineKind kind) {
    return kind >= LineKind::FirstParameter && kind <= LineKind::ParameterSet;
}

bool isOfStart(LineKind kind) {
    return kind >= LineKind::FirstParameter && kind <= LineKind::Error;
}

} // namespace

SessionReader::SessionReader(VerdictSink& sink, std::uint64_t number, const LogLine& first)
    : games([this](const Game& game) { output.onDecision(session, game); }), output(sink),
      phase(isOfCommandLine(first.kind) ? Phase::CommandLine
            : isOfStart(first.kind)     ? Phase::Start
                                        : Phase::Running) {
    session.number = number;
    session.firstLine = first.number;
    session.lastLine = first.number;
    session.beginTime = first.time;
    session.processId = first.processId;
}

void SessionReader::addUnknown(ProvingLine line) {
    ++session.unknownCount;
    if (session.unknownLines.size() < kMaximumUnknownLines) {
        session.unknownLines.push_back(std::move(line));
    }
}

void SessionReader::count(const Game& game) {
    ++session.games;
    session.offers += isOffered(game) ? 1U : 0U;
    // A rate that is the same all the time and not the display's own is a given one.
    const auto refreshRate = refreshRateOf(game);
    if (session.source == FrameRateSource::RefreshRate && refreshRate && game.acceptedSamples > 0 &&
        std::max(*refreshRate, *game.averageFps) - std::min(*refreshRate, *game.averageFps) > 1) {
        session.source = FrameRateSource::Parameter;
    }
}

void SessionReader::takeHead(const std::string& name, const std::string& value) {
    if (session.head.size() < kMaximumHead) {
        session.head.emplace_back(name, value);
    }
    if (name == "command line") {
        session.parameters.merge(readParameters(value));
    }
}

bool SessionReader::mayFollowStart(LineKind kind) {
    return kind != LineKind::Finished && kind <= LineKind::Error;
}

void SessionReader::feed(const LogLine& line) {
    if (last) {
        addUnknown(std::move(*last));
        last.reset();
    }
    session.lastLine = line.number;
    if (!line.time.empty()) {
        session.endTime = line.time;
    }
    if (line.kind == LineKind::Foreign) {
        addUnknown(toProvingLine(line));
    } else if (line.kind == LineKind::Unknown) {
        last = toProvingLine(line);
        isLastWhole = line.isWhole && !mayBeCut(withoutFront(line.text));
    } else if (line.kind == LineKind::Error) {
        fail(line);
    } else if (line.kind == LineKind::Finished) {
        finish(line);
    } else if (!feedStart(line)) {
        feedRunning(line);
    }
}

void SessionReader::close() {
    if (isClosed) {
        return;
    }
    if (last && isLastWhole) {
        session.error = withoutFront(last->text);
        end(SessionEnd::Error);
    } else {
        if (last) {
            addUnknown(std::move(*last));
            last.reset();
        }
        end(SessionEnd::CutOff);
    }
}

void SessionReader::end(SessionEnd how) {
    session.end = how;
    isClosed = true;
    if (isPassOpen && !pass->isTold() && (how == SessionEnd::CutOff || how == SessionEnd::Error)) {
        pass->cutOff();
    }
    endPass();
    games.close();
    for (ProvingLine& press : games.takeLoosePresses()) {
        session.loosePresses.push_back(std::move(press));
    }
}

void SessionReader::finish(const LogLine& line) {
    session.proof.add(line);
    const bool hasStart = !session.version.empty() && phase == Phase::Start;
    if (hasStart && !session.proof.has(LineKind::TitlesProcessed)) {
        end(SessionEnd::NoTitles);
    } else if (phase == Phase::Start && session.proof.has(LineKind::RegistryNotGranted)) {
        end(SessionEnd::NoRegistry);
    } else if (phase == Phase::Start && session.proof.has(LineKind::NoGraphics)) {
        end(SessionEnd::NoGraphics);
    } else {
        end(SessionEnd::Normal);
    }
}

void SessionReader::fail(const LogLine& line) {
    session.proof.add(line);
    session.error = withoutFront(toProvingLine(line).text);
    if (phase == Phase::CommandLine) {
        end(SessionEnd::BadNumber);
    } else if (phase == Phase::Start && session.error.starts_with("[json.exception.")) {
        end(SessionEnd::MalformedDatabase);
    } else {
        end(SessionEnd::Error);
    }
}

void SessionReader::setParameter(const LogLine& line) {
    const std::string_view name = before(line.value, " to ");
    for (const ParameterPattern& parameter : kParameterPatterns) {
        if (name == parameter.name) {
            session.parameters[parameter.flag] = line.value.substr(std::min(line.value.size(), name.size() + 4));
        }
    }
}

void SessionReader::learnSource(const LogLine& line) {
    if (session.parameters.contains("-fps")) {
        session.source = FrameRateSource::Parameter;
    } else {
        session.source =
            line.kind == LineKind::LibraryAcquired ? FrameRateSource::Library : FrameRateSource::RefreshRate;
    }
}

bool SessionReader::feedStart(const LogLine& line) {
    if (phase == Phase::Running || !(isOfStart(line.kind) || line.kind == LineKind::CurrentDisplay)) {
        if (line.kind == LineKind::LibraryAcquired || line.kind == LineKind::GenericGraphics) {
            learnSource(line);
        }
        phase = Phase::Running;
        return false;
    }
    switch (line.kind) {
    case LineKind::ParameterSet:
        setParameter(line);
        break;
    case LineKind::Started:
        phase = Phase::Start;
        session.version = line.value;
        break;
    case LineKind::LibraryAcquired:
    case LineKind::GenericGraphics:
        learnSource(line);
        break;
    default:
        break;
    }
    if (line.kind != LineKind::FirstParameter && line.kind != LineKind::Parameter) {
        session.proof.add(line);
    }
    if (line.kind == LineKind::RunningAlready) {
        end(SessionEnd::RunningAlready);
    }
    return true;
}

bool SessionReader::feedPass(const LogLine& line) {
    if (!pass) {
        return false;
    }
    if (line.kind == LineKind::PressReadMore) {
        pass->pressReadMore(line);
        return true;
    }
    if (!isPassOpen) {
        return false;
    }
    // A player may answer an earlier offer meanwhile.
    const bool hasName = line.kind == LineKind::PatchFailed || line.kind == LineKind::MarkerSet;
    if (hasName && !pass->isAt(line.value) && games.feed(line)) {
        return true;
    }
    return pass->feed(line);
}

void SessionReader::endPass() {
    isPassOpen = false;
    if (!pass) {
        return;
    }
    if (session.passes.size() < kMaximumPasses) {
        session.passes.push_back(pass->finish());
        keptTitles += session.passes.back().titles.size();
    } else {
        ++session.omittedPasses;
    }
    pass.reset();
}

void SessionReader::feedRunning(const LogLine& line) {
    if (line.kind == LineKind::Publisher) {
        if (const auto name = behindLast(line.value, "', binary name: '"); !name.empty()) {
            session.lastBinaryName = name;
        }
    }
    if (line.kind == LineKind::BulkPass) {
        games.endHandler();
        endPass();
        pass.emplace(line, kMaximumTitles - keptTitles);
        isPassOpen = true;
        return;
    }
    if (feedPass(line)) {
        return;
    }
    switch (line.kind) {
    case LineKind::Reset:
    case LineKind::TitleInformation:
        games.endHandler();
        isPassOpen = false;
        session.proof.add(line);
        return;
    case LineKind::AppStarted:
    case LineKind::AppFinished:
    case LineKind::Tick:
    case LineKind::Sample:
    case LineKind::SwitchTo:
    case LineKind::NotInForeground:
        isPassOpen = false;
        break;
    default:
        break;
    }
    if (!games.feed(line)) {
        session.proof.add(line);
    }
}

} // namespace brisk::logbook
