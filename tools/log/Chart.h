#pragma once

#include "tools/log/Game.h"
#include "tools/log/Session.h"

#include <string>

namespace brisk::logbook {

// A game's course as a drawing: a band of its states over the ticks, and below it the frame rate with the limit, the
// average and the samples that do not count. The number makes its ids differ from other games'. Empty where the log
// tells of no state.
std::string drawChart(const Session& session, const Game& game, std::size_t number);

// The same in numbers, as tables.
std::string tabulate(const Session& session, const Game& game);

} // namespace brisk::logbook
