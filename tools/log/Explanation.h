#pragma once

#include "tools/log/Game.h"
#include "tools/log/Session.h"

#include <string>
#include <vector>

namespace brisk::logbook {

// A verdict in words: what happened, what to do next, and the lines that prove it in the log's order.
struct Explanation {
    std::string verdict;
    std::string next;
    std::vector<ProvingLine> lines;
};

Explanation explain(const Session& session, const Game& game);
Explanation explain(const Session& session);

// Where the session's frame rates come from, as a sentence.
std::string explainSource(const Session& session);

// "StarlitHarbour.exe (game 1001)", as far as the log tells.
std::string nameOf(const Game& game);

} // namespace brisk::logbook
