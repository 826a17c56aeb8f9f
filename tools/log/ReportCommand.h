#pragma once

#include <string>

namespace brisk::logbook {

struct ReportOptions {
    std::string log;
    std::string output = "report.html";
    bool redacts = false;
};

// Writes a page about a log; the exit code: 0 an offer was made, 1 none, 2 unreadable or unwritable, 3 no session in
// it.
int runReport(const ReportOptions& options);

} // namespace brisk::logbook
