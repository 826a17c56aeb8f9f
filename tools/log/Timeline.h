#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brisk::logbook {

enum class State { Waiting, Warming, Tracking, NotTracking };

// A state of a game and how many ticks of the service's timer the log tells of it: all while waiting, the samples and
// the ticks out of the foreground otherwise. Ticks of warming up and of a pause leave no line.
struct Phase {
    State state = State::Waiting;
    std::uint64_t firstLine = 0;
    std::uint64_t ticks = 0;
    std::uint64_t away = 0; // of the ticks: out of the foreground
    std::string time;       // of its begin; may be empty
};

// Frame rates that follow one another.
struct SampleGroup {
    std::uint64_t line = 0; // of the first
    std::uint64_t count = 0;
    std::uint64_t rejected = 0; // outside of 15 to 300
    double sum = 0;
    double lowest = 0;
    double highest = 0;
    std::size_t phase = 0;  // of the first
    std::uint64_t tick = 0; // of the first, within its phase

    double mean() const { return sum / static_cast<double>(count); }
};

// The course of a game. When it grows long, neighbouring samples are put together, so that it never grows beyond some
// thousand entries.
class Timeline {
public:
    void enter(State state, std::uint64_t line, std::string_view time);
    void tick(bool isAway);
    void sample(double fps, bool isRejected, std::uint64_t line);

    std::vector<Phase> phases;
    std::uint64_t omittedPhases = 0; // behind the last one
    std::vector<SampleGroup> samples;
    std::uint64_t groupSize = 1; // samples in a full group

private:
    void halve();
};

} // namespace brisk::logbook
