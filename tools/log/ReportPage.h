#pragma once

#include "tools/log/Game.h"
#include "tools/log/Session.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace brisk::logbook {

// What a page shows of a log.
struct ReportContent {
    struct Run {
        Session session;
        std::vector<Game> games;
    };

    std::string log; // its path
    std::vector<Run> runs;
    std::uint64_t omittedGames = 0;
    std::uint64_t lineCount = 0;
    std::map<std::uint64_t, std::string> lines; // of the log, by number; all of them, or those around the proofs
};

// One page that needs nothing besides itself: HTML, and well-formed XML at once.
std::string makePage(const ReportContent& content);

// The numbers of the lines that verdicts lean on.
std::vector<std::uint64_t> findProvingLines(const ReportContent& content);

} // namespace brisk::logbook
