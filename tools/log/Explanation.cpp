#include "tools/log/Explanation.h"

#include "tools/log/GameWords.h"

#include <algorithm>

namespace brisk::logbook {

namespace {

Explanation explainReason(const Session& session, const Game& game) {
    switch (findReason(game)) {
    case Reason::Offer:
        return explainOffer(game);
    case Reason::UnknownId:
    case Reason::NeverInForeground:
    case Reason::OtherProcess:
    case Reason::NotSupported:
    case Reason::ProcessNotOpened:
        return explainWaiting(session, game);
    case Reason::EndedWhileWarming:
    case Reason::TooFewSamples:
    case Reason::NotNativeResolution:
    case Reason::NoLowerResolution:
    case Reason::FastEnough:
        return explainMeasuring(session, game);
    case Reason::AlreadyAsWanted:
    case Reason::Condition:
    case Reason::OffersOff:
    case Reason::RefusedThreeTimes:
        return explainSettings(game);
    case Reason::SecondGame:
    case Reason::CutOff:
        break;
    }
    return explainTracking(session, game);
}

} // namespace

std::string nameOf(const Game& game) {
    const std::string id = game.id ? "game " + std::to_string(*game.id) : "a game announced before the log begins";
    return game.binaryName.empty() ? id : game.binaryName + " (" + id + ")";
}

Explanation explain(const Session& session, const Game& game) {
    Explanation explanation = explainReason(session, game);
    const bool isOpen = !game.isFinished && game.isAccepted && !game.isSecond && !game.hadSecond;
    if (isOpen && findReason(game) != Reason::CutOff) {
        explanation.verdict += session.end == SessionEnd::CutOff
                                   ? " (The log has no end of this game; this is how far it goes.)"
                                   : " The service ended before the host told the game's end.";
    }
    for (const Reason further : findFurtherReasons(game)) {
        explanation.verdict +=
            further == Reason::NotNativeResolution ? " Besides, the desktop did not run at its native resolution."
            : further == Reason::NoLowerResolution ? " Besides, the display has no lower resolution of the same shape."
                                                   : " Besides, there was no sample that counts.";
    }
    // A tick may have several verdicts, but none of them without its line.
    if (explanation.lines.empty()) {
        explanation.lines = game.proof.select({LineKind::AppStarted, LineKind::SwitchTo, LineKind::Average});
    }
    return explanation;
}

} // namespace brisk::logbook
