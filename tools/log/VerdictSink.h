#pragma once

#include "tools/log/Game.h"
#include "tools/log/Session.h"

namespace brisk::logbook {

// Takes what a log tells, a session after the other, each with its games in the order of their announcements.
class VerdictSink {
public:
    virtual ~VerdictSink() = default;

    // A game whose story is over; everything about it is known.
    virtual void onGame(const Session& session, const Game& game) = 0;
    // The session is over. Its passes and its unknown lines are told here.
    virtual void onSession(const Session& session) = 0;
    // What decided on a game, or an answer to its offer, has just been read. The story is not over.
    virtual void onDecision(const Session& /*session*/, const Game& /*game*/) {}

protected:
    VerdictSink() = default;
    VerdictSink(const VerdictSink&) = default;
    VerdictSink& operator=(const VerdictSink&) = default;
};

} // namespace brisk::logbook
