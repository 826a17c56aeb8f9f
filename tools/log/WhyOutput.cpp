#include "tools/log/WhyOutput.h"

namespace brisk::logbook {

void WhyOutput::onGame(const Session& session, const Game& game) {
    if (selection.includes(session.number) && selection.includes(game, database)) {
        offers += isOffered(game) ? 1U : 0U;
        printGame(session, game);
    }
}

void WhyOutput::onSession(const Session& session) {
    if (selection.includes(session.number)) {
        printSession(session);
    }
}

} // namespace brisk::logbook
