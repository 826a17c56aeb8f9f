#include "tools/log/GameReader.h"

#include "tools/log/LineValues.h"

#include <algorithm>

namespace brisk::logbook {

void GameReader::reach(Game& game, WaitingStage stage) {
    game.stage = std::max(game.stage, stage);
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
    case LineKind::Window: {
        Game& game = follow(line);
        if (line.value == "0") {
            reach(game, WaitingStage::NoWindow);
            note(game, line);
        }
        return true;
    }
    case LineKind::WindowProcess:
        follow(line);
        return true;
    case LineKind::OtherProcess:
        reach(follow(line), WaitingStage::OtherProcess);
        note(*tracked, line);
        return true;
    case LineKind::NoFileName:
        hasFileName = false;
        note(follow(line), line);
        return true;
    case LineKind::Publisher: {
        Game& game = follow(line);
        game.publisher = before(line.value, "', binary name: '");
        if (const auto name = behindLast(line.value, "', binary name: '"); !name.empty()) {
            game.binaryName = name;
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
        reach(follow(line), hasFileName ? WaitingStage::NotSupported : WaitingStage::NotOpened);
        note(*tracked, line);
        return true;
    case LineKind::OpenProcessFailed:
        reach(follow(line), WaitingStage::NotOpened);
        note(*tracked, line);
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
