#pragma once

#include "tools/log/Game.h"
#include "tools/log/TitleFacts.h"

#include <optional>
#include <string>
#include <vector>

namespace brisk::logbook {

// A game beside what the title database says of it.
struct DatabaseView {
    const TitleFacts* title = nullptr; // of the executable, or else of the id
    bool isIdKnown = false;
    bool hasOtherPublisher = false;
    std::vector<std::uint32_t> knownIds; // the first ones; only for an unknown id
    struct Setting {
        ProvingLine line; // "game setting '...' is not optimal '...'."
        std::vector<const TitleFacts::Field*> fields;
    };
    std::vector<Setting> settings;
    const TitleFacts::Condition* condition = nullptr; // that forbids
    std::vector<std::string> sentences;               // the same in words
};

DatabaseView compare(const Game& game, const DatabaseFacts& facts);

} // namespace brisk::logbook
