#include "tools/log/GameReader.h"

#include "tools/log/LineValues.h"

#include <memory>
#include <utility>

namespace brisk::logbook {

namespace {

constexpr std::size_t kMaximumLoosePresses = 20;

std::optional<bool> readBool(std::string_view text) {
    if (text == "1" || text == "0") {
        return text == "1";
    }
    return std::nullopt;
}

// Of a game of which the log has a part of its end alone.
std::unique_ptr<Game> makeOrphan(const LogLine& line) {
    auto orphan = std::make_unique<Game>();
    Game& game = *orphan;
    game.firstLine = line.number;
    game.beginTime = line.time;
    game.isAccepted = true;
    game.isWarmed = true;
    game.isTracked = true;
    game.isFinished = true;
    return orphan;
}

} // namespace

bool GameReader::feedEnd(const LogLine& line) {
    switch (line.kind) {
    case LineKind::AppFinished:
        endHandler();
        isFinishing = true;
        finishLine = toProvingLine(line);
        if (tracked) {
            judged = std::exchange(tracked, nullptr);
            judged->isFinished = true;
            note(*judged, line);
        }
        return true;
    case LineKind::FinishedInIdle:
        isFinishing = false;
        return true;
    case LineKind::Average:
        if (!judged) {
            judged = &follow(line);
            tracked = nullptr;
            judged->isFinished = true;
        }
        judged->averageFps = readNumber(line.value);
        judged->intervals = readNumberBehind(line.value, "intervals = ");
        // Nobody knows how far a game came of which the log has the end alone.
        if (!judged->id && judged->allTicks() == 0) {
            judged->isWarmed = true;
            judged->isTracked = true;
        }
        note(*judged, line);
        return true;
    default:
        return false;
    }
}

bool GameReader::feedJudgement(const LogLine& line) {
    // What follows an answer is the answer's.
    if (tracked || (judged && judged->answer != Answer::None)) {
        return false;
    }
    if (!judged && (line.kind < LineKind::LibraryDisplayFailed || line.kind > LineKind::Refusals)) {
        return false;
    }
    if (!judged && !orphan) {
        orphan = makeOrphan(line);
    }
    Game& game = judged ? *judged : *orphan;
    bool isDecision = false;
    switch (line.kind) {
    case LineKind::NativeResolution:
        game.nativeResolution = line.value;
        break;
    case LineKind::LowerResolution:
        game.lowerResolution = line.value;
        break;
    case LineKind::Ratio:
        game.ratio = readReal(line.value);
        isDecision = !(game.ratio < kRatioLimit);
        break;
    case LineKind::Needed:
        game.isNeeded = readBool(line.value);
        isDecision = game.isNeeded == false;
        break;
    case LineKind::OffersAllowed:
        game.isAllowed = readBool(line.value);
        isDecision = game.isAllowed == false;
        break;
    case LineKind::Refusals:
        game.refusals = readNumber(line.value);
        isDecision = game.refusals.has_value();
        break;
    case LineKind::TooFewSamples:
        game.intervals = readNumber(line.value);
        isDecision = true;
        break;
    case LineKind::NotNative:
    case LineKind::NoOptimalResolution:
        isDecision = true;
        break;
    case LineKind::NoLowerResolution:
    case LineKind::LibraryDisplayFailed:
    case LineKind::ShouldShowToast:
    case LineKind::NotOptimal:
    case LineKind::NotLoaded:
    case LineKind::ConditionForbids:
    case LineKind::ConditionMissing:
    case LineKind::ToastRefused:
    case LineKind::RegistryFailed:
        break;
    default:
        return false;
    }
    note(game, line);
    if (!judged && !adopt(line)) {
        return false;
    }
    if (isDecision) {
        decide(*judged);
    }
    return true;
}

// A pass over all games writes some of the same lines: only one that a game's end alone writes makes a game of them.
bool GameReader::adopt(const LogLine& line) {
    switch (line.kind) {
    case LineKind::NotNative:
    case LineKind::TooFewSamples:
    case LineKind::Ratio:
    case LineKind::ShouldShowToast:
    case LineKind::Needed:
    case LineKind::OffersAllowed:
    case LineKind::Refusals:
        judged = &games.emplace_back(Entry{std::move(*orphan)}).game;
        orphan.reset();
        return true;
    default:
        return false;
    }
}

bool GameReader::feedPress(const LogLine& line) {
    switch (line.kind) {
    case LineKind::PressConfigure:
        press(line, Answer::Configure);
        return true;
    case LineKind::PressNotNow:
        press(line, Answer::NotNow);
        return true;
    case LineKind::PressDontAskAgain:
        press(line, Answer::DontAskAgain);
        return true;
    case LineKind::Optimized:
    case LineKind::PatchFailed:
    case LineKind::SettingNotWritten:
    case LineKind::MarkerSet:
    case LineKind::MarkerFailed:
    case LineKind::RefusalCounted:
    case LineKind::RefusalNotCounted:
    case LineKind::OffersDisabled:
    case LineKind::OffersNotDisabled:
    case LineKind::ToastRefused:
    case LineKind::RegistryFailed:
        break;
    default:
        return false;
    }
    Game* game = judged && isOffered(*judged) ? judged : answerable;
    if (!game || game->answer == Answer::None) {
        return false;
    }
    if (line.kind == LineKind::PatchFailed) {
        game->isPatched = false;
    } else if (line.kind == LineKind::Optimized || line.kind == LineKind::MarkerSet) {
        game->isPatched = true;
    }
    // The toast about a failed patch may be refused: that is not the offer's.
    if (line.kind != LineKind::ToastRefused) {
        note(*game, line);
        decide(*game);
    }
    return true;
}

void GameReader::press(const LogLine& line, Answer answer) {
    Game* game = judged && isOffered(*judged) ? judged : answerable;
    if (!game) {
        if (loosePresses.size() < kMaximumLoosePresses) {
            loosePresses.push_back(toProvingLine(line));
        }
        return;
    }
    game->answer = answer;
    note(*game, line);
    decide(*game);
}

} // namespace brisk::logbook
