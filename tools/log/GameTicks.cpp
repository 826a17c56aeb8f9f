#include "tools/log/GameReader.h"

#include "tools/log/LineValues.h"

namespace brisk::logbook {

void GameReader::endTick(const LogLine& line, TickOutcome outcome) {
    Game& game = follow(line);
    ++game.ticks[static_cast<std::size_t>(outcome)];
    note(game, line);
}

bool GameReader::feedTick(const LogLine& line) {
    switch (line.kind) {
    case LineKind::Sample:
        takeSample(line);
        return true;
    case LineKind::Tick: {
        endHandler();
        Game& game = follow(line);
        if (game.timeline.phases.empty()) {
            game.timeline.enter(State::Waiting, line.number, line.time);
        }
        game.timeline.tick(false);
        game.lastLine = line.number;
        hasFileName = true;
        return true;
    }
    case LineKind::Window:
        // As libraries write a null pointer.
        if (!line.value.empty() && line.value.find_first_not_of("0x") == std::string_view::npos) {
            endTick(line, TickOutcome::NoWindow);
        } else {
            follow(line);
        }
        return true;
    case LineKind::WindowProcess:
        follow(line);
        return true;
    case LineKind::OtherProcess:
        endTick(line, TickOutcome::OtherProcess);
        return true;
    case LineKind::NoFileName:
        hasFileName = false;
        note(follow(line), line);
        return true;
    case LineKind::Publisher: {
        Game& game = follow(line);
        if (const auto name = behindLast(line.value, "', binary name: '"); !name.empty()) {
            game.binaryName = name;
            game.publisher = before(line.value, "', binary name: '");
        }
        note(game, line);
        return true;
    }
    case LineKind::NoFileProperties:
    case LineKind::CheckingPath:
    case LineKind::CheckingRegistry:
    case LineKind::ConfigFound:
    case LineKind::ConfigNotFound:
    case LineKind::RegistryOpenFailed:
        note(follow(line), line);
        return true;
    case LineKind::ConfigSkipped:
        endTick(line, hasFileName ? TickOutcome::NotSupported : TickOutcome::NotOpened);
        return true;
    case LineKind::OpenProcessFailed:
        endTick(line, TickOutcome::NotOpened);
        return true;
    case LineKind::NotInForeground:
    case LineKind::ExitCodeFailed:
        endHandler();
        follow(line).timeline.tick(true);
        tracked->isWarmed = true;
        note(*tracked, line);
        return true;
    case LineKind::ProcessClosed:
        endHandler();
        follow(line).isWarmed = true;
        note(*tracked, line);
        return true;
    case LineKind::SampleFailed:
        note(follow(line), line);
        return true;
    default:
        return false;
    }
}

void GameReader::takeSample(const LogLine& line) {
    if (judged || announced) {
        endHandler();
    }
    Game& game = follow(line);
    game.isWarmed = true;
    game.isTracked = true;
    game.lastLine = line.number;
    if (game.timeline.phases.empty()) {
        game.timeline.enter(State::Tracking, line.number, line.time);
    }
    const auto fps = readReal(line.value);
    if (!fps) {
        return;
    }
    const bool isRejected = !(*fps >= kLowestFps && *fps <= kHighestFps);
    ++(isRejected ? game.rejectedSamples : game.acceptedSamples);
    game.timeline.sample(*fps, isRejected, line.number);
    if (isRejected || game.acceptedSamples == 1) {
        game.proof.add(line);
    }
    if (!line.time.empty()) {
        game.endTime = line.time;
    }
}

} // namespace brisk::logbook
