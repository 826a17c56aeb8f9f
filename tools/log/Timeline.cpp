#include "tools/log/Timeline.h"

#include <algorithm>

namespace brisk::logbook {

namespace {

constexpr std::size_t kMaximumPhases = 2000;
constexpr std::size_t kMaximumGroups = 2048;

void merge(SampleGroup& group, const SampleGroup& next) {
    group.lowest = std::min(group.lowest, next.lowest);
    group.highest = std::max(group.highest, next.highest);
    group.sum += next.sum;
    group.count += next.count;
    group.rejected += next.rejected;
}

} // namespace

void Timeline::enter(State state, std::uint64_t line, std::string_view time) {
    if (phases.size() == kMaximumPhases) {
        ++omittedPhases;
        return;
    }
    phases.push_back({state, line, 0, 0, std::string(time)});
}

void Timeline::tick(bool isAway) {
    if (!phases.empty() && omittedPhases == 0) {
        ++phases.back().ticks;
        phases.back().away += isAway ? 1 : 0;
    }
}

void Timeline::sample(double fps, bool isRejected, std::uint64_t line) {
    const SampleGroup one{line,
                          1,
                          isRejected ? 1U : 0U,
                          fps,
                          fps,
                          fps,
                          phases.empty() ? 0 : phases.size() - 1,
                          phases.empty() ? 0 : phases.back().ticks};
    tick(false);
    if (!samples.empty() && samples.back().count < groupSize) {
        merge(samples.back(), one);
        return;
    }
    if (samples.size() == kMaximumGroups) {
        halve();
    }
    samples.push_back(one);
}

void Timeline::halve() {
    std::size_t kept = 0;
    for (std::size_t index = 0; index < samples.size(); index += 2) {
        SampleGroup group = samples[index];
        if (index + 1 < samples.size()) {
            merge(group, samples[index + 1]);
        }
        samples[kept++] = group;
    }
    samples.resize(kept);
    groupSize *= 2;
}

} // namespace brisk::logbook
