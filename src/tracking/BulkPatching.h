#pragma once

#include <string>

namespace brisk {

// Adjusting every installed title in one pass.

enum class BulkOutcome {
    Patched = 0,             // at least one title, and none failed
    NothingToDo = 1,         // nothing patched, nothing failed
    NoOptimalResolution = 2, // nothing was tried
    Failed = 3,              // at least one title
};

// The host's message: patches and reports the outcome in one toast. Window thread.
void onMassivePatching();

// Patches every title that is found on this machine and needs it. Appends two lines a title found to the report: its
// display name and what was done. Window thread.
BulkOutcome doMassivePatching(std::string& report);

// The "Read More" button: shows the report. Notification thread.
void readMore(const std::string& report);

} // namespace brisk
