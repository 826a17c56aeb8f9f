#pragma once

#include <chrono>
#include <cstddef>

namespace brisk::workbench {

// A bar on standard error for work that takes longer than a second. There is none where standard error is no terminal.
class Progress {
public:
    // `amount` of work in all, in whatever unit.
    explicit Progress(std::size_t amount);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    // Wipes the bar.
    ~Progress();

    // So much of it is done.
    void advanceTo(std::size_t done);

private:
    std::size_t total;
    bool isWanted;
    bool isShown = false;
    std::chrono::steady_clock::time_point next; // when it is to be drawn
};

} // namespace brisk::workbench
