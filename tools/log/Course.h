#pragma once

#include "tools/log/Game.h"
#include "tools/log/Session.h"

#include <vector>

namespace brisk::logbook {

// A state of a game's course, in ticks from its announcement on.
struct Stretch {
    State state;
    double begin;
    double length;
    bool isAssumed; // the log does not tell the length: the parameter's, or its default, stands for it
    std::size_t phase;
};

// Where the states lie; in the order of the timeline's phases.
std::vector<Stretch> findCourse(const Session& session, const Game& game);

// "waiting", "warming up", "measuring", "pausing".
const char* wordsOf(State state);

} // namespace brisk::logbook
