#pragma once

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>

namespace brisk::logbook {

// Reads a log that a service is writing, and prints a verdict as soon as a line decides on a game, or on what came of
// its offer. What the log holds already is not printed. Returns when the service that writes has ended: 0, or 2 where
// the file cannot be opened. pause is called while nothing new is there; false ends it, too.
int follow(const std::string& path, std::ostream& out, const std::function<bool()>& pause);

} // namespace brisk::logbook
