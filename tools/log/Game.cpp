#include "tools/log/Game.h"

#include <array>
#include <cmath>
#include <numeric>

namespace brisk::logbook {

namespace {

// Of a game that never was found: what most ticks told in which it had the foreground, or else what most of the others
// did.
Reason findWaitingReason(const Game& game) {
    const auto ticks = [&game](TickOutcome outcome) { return game.ticksOf(outcome); };
    if (ticks(TickOutcome::NotSupported) + ticks(TickOutcome::NotOpened) > 0) {
        return ticks(TickOutcome::NotOpened) > ticks(TickOutcome::NotSupported) ? Reason::ProcessNotOpened
                                                                                : Reason::NotSupported;
    }
    if (ticks(TickOutcome::NoWindow) + ticks(TickOutcome::OtherProcess) > 0) {
        return ticks(TickOutcome::NoWindow) > ticks(TickOutcome::OtherProcess) ? Reason::NeverInForeground
                                                                               : Reason::OtherProcess;
    }
    return game.isFinished ? Reason::NeverInForeground : Reason::CutOff;
}

Reason findSettingsReason(const Game& game) {
    const Proof& proof = game.proof;
    if (proof.has(LineKind::ConditionForbids) || proof.has(LineKind::ConditionMissing)) {
        return Reason::Condition;
    }
    // The configuration went away while the game was played.
    return proof.has(LineKind::NotLoaded) ? Reason::NotSupported : Reason::AlreadyAsWanted;
}

// Of a game whose end was judged; nothing when the log does not tell.
std::optional<Reason> findJudgement(const Game& game) {
    const Proof& proof = game.proof;
    if (game.refusals) {
        return *game.refusals < kMaximumRefusals ? Reason::Offer : Reason::RefusedThreeTimes;
    }
    if (game.isAllowed == false) {
        return Reason::OffersOff;
    }
    if (game.isNeeded == false) {
        return findSettingsReason(game);
    }
    if (game.ratio && !proof.has(LineKind::ShouldShowToast) && !(*game.ratio < kRatioLimit)) {
        return Reason::FastEnough;
    }
    return std::nullopt;
}

std::optional<Reason> findDisplayReason(const Game& game) {
    if (game.proof.has(LineKind::NotNative)) {
        return Reason::NotNativeResolution;
    }
    if (game.proof.has(LineKind::NoOptimalResolution)) {
        return Reason::NoLowerResolution;
    }
    return std::nullopt;
}

} // namespace

const char* codeOf(Reason reason) {
    static constexpr std::array kCodes{"offer",
                                       "unknown-id",
                                       "never-in-foreground",
                                       "other-process",
                                       "not-supported",
                                       "process-not-opened",
                                       "ended-while-warming",
                                       "too-few-samples",
                                       "not-native-resolution",
                                       "no-lower-resolution",
                                       "fast-enough",
                                       "already-as-wanted",
                                       "condition",
                                       "offers-off",
                                       "refused-three-times",
                                       "second-game",
                                       "cut-off"};
    return kCodes[static_cast<std::size_t>(reason)];
}

const char* codeOf(Answer answer) {
    static constexpr std::array kCodes{"none", "configure", "not-now", "dont-ask-again"};
    return kCodes[static_cast<std::size_t>(answer)];
}

Reason findReason(const Game& game) {
    if (game.isSecond || game.hadSecond) {
        return Reason::SecondGame;
    }
    if (game.proof.has(LineKind::UnknownId)) {
        return Reason::UnknownId;
    }
    if (!game.isAccepted) {
        return Reason::CutOff;
    }
    // A game that was never found is judged all the same: what is said of it then is not the reason.
    if (!game.isWarmed) {
        return findWaitingReason(game);
    }
    if (const auto judgement = findJudgement(game)) {
        return *judgement;
    }
    if (!game.isTracked) {
        const bool hasEnded = game.isFinished || game.proof.has(LineKind::ProcessClosed);
        return hasEnded ? Reason::EndedWhileWarming : Reason::CutOff;
    }
    if (game.proof.has(LineKind::TooFewSamples)) {
        return Reason::TooFewSamples;
    }
    return findDisplayReason(game).value_or(Reason::CutOff);
}

std::vector<Reason> findFurtherReasons(const Game& game) {
    std::vector<Reason> reasons;
    const Reason reason = findReason(game);
    if (const auto display = findDisplayReason(game); display && *display != reason) {
        reasons.push_back(*display);
    }
    if (reason == Reason::NotNativeResolution && game.acceptedSamples == 0) {
        reasons.push_back(Reason::TooFewSamples);
    }
    return reasons;
}

std::uint64_t Game::allTicks() const {
    return std::accumulate(ticks.begin(), ticks.end(), std::uint64_t{0});
}

bool isOffered(const Game& game) {
    return findReason(game) == Reason::Offer;
}

std::optional<std::uint64_t> refreshRateOf(const Game& game) {
    if (!game.ratio || !game.averageFps || !std::isfinite(*game.ratio) || *game.ratio <= 0) {
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(std::llround(static_cast<double>(*game.averageFps) / *game.ratio));
}

} // namespace brisk::logbook
