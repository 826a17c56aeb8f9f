#include "tools/log/Course.h"

#include "tools/log/LineValues.h"

#include <algorithm>

namespace brisk::logbook {

namespace {

constexpr std::uint64_t kDefaultTicks = 120;       // of warming up, and of a pause
constexpr std::uint64_t kLongestAssumed = 100'000; // a parameter may be any number

double parameter(const Session& session, const char* flag) {
    const auto found = session.parameters.find(flag);
    const auto number = found == session.parameters.end() ? std::nullopt : readNumber(found->second);
    return static_cast<double>(std::clamp<std::uint64_t>(number.value_or(kDefaultTicks), 1, kLongestAssumed));
}

} // namespace

std::vector<Stretch> findCourse(const Session& session, const Game& game) {
    std::vector<Stretch> course;
    double begin = 0;
    const std::vector<Phase>& phases = game.timeline.phases;
    for (std::size_t index = 0; index < phases.size(); ++index) {
        const Phase& phase = phases[index];
        const bool isWhole = index + 1 < phases.size();
        double length = std::max<double>(1, static_cast<double>(phase.ticks));
        bool isAssumed = false;
        if (phase.state == State::Warming || phase.state == State::NotTracking) {
            const double counted = parameter(session, phase.state == State::Warming ? "-nw" : "-nn");
            length = static_cast<double>(phase.away) + (isWhole ? counted : 1);
            isAssumed = true;
        }
        course.push_back({phase.state, begin, length, isAssumed, index});
        begin += length;
    }
    return course;
}

const char* wordsOf(State state) {
    switch (state) {
    case State::Waiting:
        return "waiting";
    case State::Warming:
        return "warming up";
    case State::Tracking:
        return "measuring";
    case State::NotTracking:
        break;
    }
    return "pausing";
}

} // namespace brisk::logbook
