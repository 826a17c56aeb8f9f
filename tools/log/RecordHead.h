#pragma once

#include "tools/log/ServiceFacts.h"

#include <string>

namespace brisk::logbook {

// The head of a recording, a line a fact: "# NAME: VALUE". The service, its database, Windows, the displays' modes and
// the service's values of the registry.
std::string makeHead(const ServiceFacts& service);

} // namespace brisk::logbook
