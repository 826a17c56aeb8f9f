#pragma once

#include "tools/log/Game.h"
#include "tools/log/TitleFacts.h"

#include <cstdint>
#include <optional>
#include <string>

namespace brisk::logbook {

// Which sessions and games the user wants to see.
struct Selection {
    std::optional<std::uint64_t> session;
    std::string game; // an id, decimal or hexadecimal, or a name; empty: all

    bool includes(std::uint64_t number) const { return !session || *session == number; }
    // The database, where there is one, knows titles' names.
    bool includes(const Game& one, const DatabaseFacts* database) const;
};

} // namespace brisk::logbook
