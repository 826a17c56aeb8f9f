#include "tools/log/GameReader.h"

#include "tools/log/LineValues.h"

#include <algorithm>
#include <utility>

namespace brisk::logbook {

bool GameReader::feed(const LogLine& line) {
    return feedTick(line) || feedEnd(line) || feedJudgement(line) || feedAnnouncement(line) || feedPress(line);
}

Game& GameReader::begin(const LogLine& line) {
    Entry& entry = games.emplace_back();
    entry.game.firstLine = line.number;
    entry.game.lastLine = line.number;
    entry.game.beginTime = line.time;
    return entry.game;
}

// The tracked game; one whose announcement the log does not have where none is.
Game& GameReader::follow(const LogLine& line) {
    if (!tracked) {
        endHandler();
        tracked = &begin(line);
        tracked->isAccepted = true;
    }
    return *tracked;
}

GameReader::Entry* GameReader::entryOf(const Game* game) {
    const auto found =
        std::find_if(games.rbegin(), games.rend(), [game](const Entry& one) { return &one.game == game; });
    return found == games.rend() ? nullptr : &*found;
}

void GameReader::end(Game* game) {
    if (Entry* entry = entryOf(game)) {
        entry->isOver = true;
    }
}

void GameReader::note(Game& game, const LogLine& line) {
    game.proof.add(line);
    game.lastLine = line.number;
    if (!line.time.empty()) {
        game.endTime = line.time;
    }
}

void GameReader::decide(const Game& game) {
    if (onDecision) {
        onDecision(game);
    }
}

void GameReader::endHandler() {
    isFinishing = false;
    orphan.reset();
    if (announced) {
        end(std::exchange(announced, nullptr));
    }
    if (Game* game = std::exchange(judged, nullptr)) {
        if (!isOffered(*game)) {
            end(game);
            return;
        }
        if (answerable) {
            end(answerable);
        }
        answerable = game;
    }
}

void GameReader::close() {
    endHandler();
    for (Entry& entry : games) {
        entry.isOver = true;
    }
    tracked = nullptr;
    answerable = nullptr;
}

Game GameReader::takeReady() {
    Game game = std::move(games.front().game);
    games.pop_front();
    return game;
}

void GameReader::giveUpFirst() {
    Game* first = games.empty() ? nullptr : &games.front().game;
    if (first && first == answerable) {
        answerable = nullptr;
        end(first);
    }
}

std::vector<ProvingLine> GameReader::takeLoosePresses() {
    return std::exchange(loosePresses, {});
}

bool GameReader::feedAnnouncement(const LogLine& line) {
    switch (line.kind) {
    case LineKind::AppStarted:
        announce(line);
        return true;
    case LineKind::SecondGame:
        rejectSecond(line);
        return true;
    case LineKind::UnknownId: {
        Game& game = announced ? *announced : begin(line);
        announced = nullptr;
        if (!game.id) {
            game.id = static_cast<std::uint32_t>(readNumber(line.value).value_or(0));
        }
        note(game, line);
        decide(game);
        end(&game);
        return true;
    }
    case LineKind::Waiting:
        accept(line);
        return true;
    case LineKind::SwitchTo:
        switchTo(line);
        return true;
    default:
        return false;
    }
}

void GameReader::announce(const LogLine& line) {
    endHandler();
    announced = &begin(line);
    if (const auto id = readNumber(line.value)) {
        announced->id = static_cast<std::uint32_t>(*id);
    }
    if (const auto process = readNumberBehind(line.value, "p2 = ")) {
        announced->processId = static_cast<std::uint32_t>(*process);
    }
    note(*announced, line);
}

void GameReader::rejectSecond(const LogLine& line) {
    if (tracked) {
        tracked->hadSecond = true;
        if (announced) {
            tracked->proof.add({announced->lastLine,
                                announced->proof.of(LineKind::AppStarted).front().text,
                                LineKind::AppStarted,
                                {},
                                {},
                                {},
                                true});
        }
        note(*tracked, line);
        decide(*tracked);
        end(std::exchange(tracked, nullptr));
    }
    if (announced) {
        announced->isSecond = true;
        note(*announced, line);
        decide(*announced);
        end(std::exchange(announced, nullptr));
    }
}

void GameReader::accept(const LogLine& line) {
    if (!announced) {
        announced = &begin(line);
        if (const auto id = readNumber(line.value)) {
            announced->id = static_cast<std::uint32_t>(*id);
        }
        if (const auto process = readNumberBehind(line.value, "PID ")) {
            announced->processId = static_cast<std::uint32_t>(*process);
        }
    }
    // Its offer has been hidden.
    if (answerable) {
        end(std::exchange(answerable, nullptr));
    }
    if (tracked) {
        end(tracked);
    }
    tracked = std::exchange(announced, nullptr);
    tracked->isAccepted = true;
    note(*tracked, line);
}

void GameReader::switchTo(const LogLine& line) {
    if (line.value == "IDLE") {
        if (isFinishing && !judged) {
            judged = &follow(line);
            tracked = nullptr;
            judged->isFinished = true;
            judged->firstLine = finishLine.line;
        }
        return;
    }
    Game& game = follow(line);
    const bool hasBegin = game.id.has_value();
    if (line.value == "WAITING_APP") {
        game.timeline.enter(State::Waiting, line.number, line.time);
    } else if (line.value == "APP_WARMING") {
        game.isWarmed = true;
        game.timeline.enter(State::Warming, line.number, line.time);
    } else if (line.value == "TRACKING") {
        game.isTracked = true;
        game.isWarmed = true;
        game.timeline.enter(State::Tracking, line.number, line.time);
    } else {
        game.isTracked = game.isTracked || !hasBegin;
        game.isWarmed = true;
        game.timeline.enter(State::NotTracking, line.number, line.time);
    }
    note(game, line);
}

} // namespace brisk::logbook
