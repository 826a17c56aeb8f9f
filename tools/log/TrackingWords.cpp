#include "tools/log/GameWords.h"

#include "tools/log/LineValues.h"

namespace brisk::logbook {

namespace {

using enum LineKind;

const char* placeOf(const Game& game) {
    if (game.averageFps || game.isFinished) {
        return "while the game's end was judged";
    }
    if (game.isTracked) {
        return "while the game was measured";
    }
    if (game.isWarmed) {
        return "while the game warmed up";
    }
    return game.isAccepted ? "while the game was waited for" : "at the game's announcement";
}

std::vector<ProvingLine> courseOf(const Game& game) {
    return game.proof.select({AppStarted, Waiting, SecondGame, SwitchTo, OtherProcess, ConfigSkipped, OpenProcessFailed,
                              NotInForeground, ProcessClosed, AppFinished, Average, Ratio, ShouldShowToast, Needed,
                              OffersAllowed});
}

} // namespace

Explanation explainTracking(const Session& session, const Game& game) {
    if (game.isSecond) {
        return {"It was announced while another game was still followed: then neither is.",
                "The host has to report the end of a game before it announces the next one.", courseOf(game)};
    }
    if (game.hadSecond) {
        return {
            "Another game was announced while this one was followed, and the service follows one at a time: tracking "
            "ended.",
            "The host has to report the end of a game before it announces the next one; launchers and helpers are "
            "not to be announced.",
            courseOf(game)};
    }
    Explanation cut{std::string("The log ends ") + placeOf(game) + ", so there is no verdict.",
                    "Get a log that goes on to the game's end, the host's message about it included.", courseOf(game)};
    if (session.end == SessionEnd::Normal) {
        cut.verdict = std::string("The service was told to quit ") + placeOf(game) + ", so it was not judged.";
        cut.next = "The host has to let the service run until the game has ended.";
    } else if (session.end == SessionEnd::Error) {
        cut.verdict = std::string("The service ended with an error ") + placeOf(game) + ": " + session.error;
        cut.next = "The session's own verdict tells what to do about the error.";
    }
    return cut;
}

} // namespace brisk::logbook
