#pragma once

#include "tools/console/Words.h"
#include "tools/log/Explanation.h"

namespace brisk::logbook {

// Parts of a game's explanation.
Explanation explainOffer(const Game& game);
Explanation explainWaiting(const Session& session, const Game& game); // never found, or not supported
Explanation explainMeasuring(const Session& session, const Game& game);
Explanation explainSettings(const Game& game);
Explanation explainTracking(const Session& session, const Game& game); // a second game, cut off

} // namespace brisk::logbook
