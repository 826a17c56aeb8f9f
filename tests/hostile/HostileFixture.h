#pragma once

#include "hostile/ProcessCounters.h"
#include "service/GameFixture.h"

#include <chrono>
#include <cstddef>

namespace brisk::testing {

inline constexpr std::size_t kMegabyte = std::size_t{1024} * 1024;

// A service that is to be stormed. Every wait may take a minute: nothing here measures speed, but nothing may hang.
class HostileFixture : public GameFixture {
protected:
    HostileFixture();

    // The size of a heavy case: the second one when BRISK_HOSTILE_FULL is 1.
    static unsigned scaled(unsigned usual, unsigned full);

    // For the next start.
    void setDatabase(const std::string& titles) const;
    // A path of this machine as a JSON string holds it.
    static std::string escaped(const std::string& path);

    // Starts the service and the clock, and takes the counters to compare with.
    void startStorm(const std::string& arguments = {});
    // The same for a service that runs.
    void beginStorm();

    // Returns when what was posted before has been handled, though a game be tracked: that game is ended.
    void settle();
    // Waits for the end as Service does, keeping an eye on the memory; the exit code.
    std::uint32_t waitForStormsEnd();

    // Prints the figures and expects the private bytes to be at most this many megabytes above those of the start.
    ProcessCounters endStorm(double megabytesMore);
    // Prints the figures; all counters are 0 when the service has ended.
    void printFigures(const ProcessCounters& after) const;
    // Has the service quit, and prints the figures.
    void quitStorm();

    ProcessCounters before;
    std::size_t peakBytes = 0;

private:
    std::chrono::steady_clock::time_point begin;
    unsigned settled = 0;
};

// A text that many times.
std::string repeated(const std::string& text, std::size_t count);

} // namespace brisk::testing
