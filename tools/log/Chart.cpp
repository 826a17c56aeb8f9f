#include "tools/log/Chart.h"

#include "tools/log/Course.h"
#include "tools/log/Explanation.h"
#include "tools/log/Markup.h"

#include <algorithm>

namespace brisk::logbook {

namespace {

// Units of the drawing.
constexpr double kLeft = 48;
constexpr double kWidth = 880;
constexpr double kBandTop = 8;
constexpr double kBandHeight = 22;
constexpr double kTop = 48;
constexpr double kHeight = 160;
constexpr double kBottom = kTop + kHeight;

const char* classOf(State state) {
    switch (state) {
    case State::Waiting:
        return "waiting";
    case State::Warming:
        return "warming";
    case State::Tracking:
        return "tracking";
    case State::NotTracking:
        break;
    }
    return "pausing";
}

std::string attribute(const char* name, double number) {
    return std::string(" ") + name + "=\"" + shortNumber(number) + "\"";
}

class Drawing {
public:
    Drawing(const Session& session, const Game& drawn)
        : game(drawn), course(findCourse(session, drawn)), rate(refreshRateOf(drawn)) {
        ticks = std::max(1.0, course.empty() ? 1.0 : course.back().begin + course.back().length);
        highest = static_cast<double>(std::max<std::uint64_t>(rate.value_or(0), 30));
        for (const SampleGroup& group : game.timeline.samples) {
            highest = std::max(highest, std::min(group.highest, 1000.0));
        }
        highest *= 1.1;
    }

    std::string draw() const { return band() + axes() + samples() + levels(); }

private:
    double x(double tick) const { return kLeft + kWidth * tick / ticks; }
    double y(double fps) const { return kBottom - kHeight * std::clamp(fps, 0.0, highest) / highest; }

    std::string band() const {
        std::string text;
        for (const Stretch& stretch : course) {
            const double width = kWidth * stretch.length / ticks;
            text += std::string("<rect class=\"") + classOf(stretch.state) + (stretch.isAssumed ? " assumed" : "") +
                    "\"" + attribute("x", x(stretch.begin)) + attribute("y", kBandTop) + attribute("width", width) +
                    attribute("height", kBandHeight) + "><title>" + wordsOf(stretch.state) + "</title></rect>\n";
            if (width > 70) {
                text += "<text class=\"state\"" + attribute("x", x(stretch.begin) + 5) + attribute("y", kBandTop + 15) +
                        ">" + wordsOf(stretch.state) + "</text>\n";
            }
        }
        return text;
    }

    std::string level(const char* name, double fps, const std::string& words) const {
        return std::string("<line class=\"") + name + "\"" + attribute("x1", kLeft) + attribute("x2", kLeft + kWidth) +
               attribute("y1", y(fps)) + attribute("y2", y(fps)) + "/>\n<text class=\"" + name + "\"" +
               attribute("x", kLeft + kWidth - 4) + attribute("y", y(fps) - 4) + " text-anchor=\"end\">" + words +
               "</text>\n";
    }

    std::string levels() const {
        std::string text;
        if (rate) {
            const double limit = kRatioLimit * static_cast<double>(*rate);
            text += level("limit", limit, "an offer needs less than " + shortNumber(limit));
        }
        if (game.averageFps && game.acceptedSamples > 0) {
            text +=
                level("average", static_cast<double>(*game.averageFps), "average " + std::to_string(*game.averageFps));
        }
        return text;
    }

    std::string axes() const {
        std::string text = "<line class=\"axis\"" + attribute("x1", kLeft) + attribute("x2", kLeft) +
                           attribute("y1", kTop) + attribute("y2", kBottom) + "/>\n<line class=\"axis\"" +
                           attribute("x1", kLeft) + attribute("x2", kLeft + kWidth) + attribute("y1", kBottom) +
                           attribute("y2", kBottom) + "/>\n";
        const int step = highest > 200 ? 60 : highest > 80 ? 30 : 10;
        for (int fps = 0; fps < highest; fps += step) {
            text += "<text class=\"scale\"" + attribute("x", kLeft - 6) + attribute("y", y(fps) + 4) +
                    " text-anchor=\"end\">" + shortNumber(fps) + "</text>\n";
        }
        return text + "<text class=\"scale\"" + attribute("x", kLeft + kWidth) + attribute("y", kBottom + 16) +
               " text-anchor=\"end\">" + shortNumber(ticks) + " ticks</text>\n";
    }

    std::string samples() const {
        std::string points;
        std::string marks;
        for (const SampleGroup& group : game.timeline.samples) {
            const double begin = group.phase < course.size() ? course[group.phase].begin : 0;
            const double middle = x(begin + static_cast<double>(group.tick) + static_cast<double>(group.count) / 2);
            points += (points.empty() ? "" : " ") + shortNumber(middle) + "," + shortNumber(y(group.mean()));
            if (group.rejected > 0) {
                marks += "<circle class=\"rejected\"" + attribute("cx", middle) +
                         attribute("cy", y(group.lowest < kLowestFps ? group.lowest : group.highest)) +
                         " r=\"4\"><title>line " + std::to_string(group.line) + ": does not count</title></circle>\n";
            }
        }
        return (points.empty() ? "" : "<polyline class=\"fps\" points=\"" + points + "\"/>\n") + marks;
    }

    const Game& game;
    std::vector<Stretch> course;
    std::optional<std::uint64_t> rate;
    double ticks = 1;
    double highest = 60;
};

std::string describe(const Session& session, const Game& game) {
    std::string text;
    for (const Stretch& stretch : findCourse(session, game)) {
        if (text.size() > 300) {
            return text + ", and so on.";
        }
        text += (text.empty() ? "" : ", ") + std::string(wordsOf(stretch.state)) + " " + shortNumber(stretch.length) +
                (stretch.isAssumed ? " (not in the log)" : "");
    }
    text = "Ticks: " + text + ".";
    if (game.acceptedSamples + game.rejectedSamples > 0) {
        text += " " + std::to_string(game.acceptedSamples) + " samples count, " + std::to_string(game.rejectedSamples) +
                " do not.";
    }
    if (game.averageFps) {
        text += " The average is " + std::to_string(*game.averageFps) + ".";
    }
    return text;
}

} // namespace

std::string drawChart(const Session& session, const Game& game, std::size_t number) {
    if (game.timeline.phases.empty()) {
        return {};
    }
    const std::string id = "chart" + std::to_string(number);
    return "<svg class=\"chart\" viewBox=\"0 0 940 232\" role=\"img\" aria-labelledby=\"" + id + "t " + id +
           "d\" xmlns=\"http://www.w3.org/2000/svg\">\n<title id=\"" + id + "t\">" +
           escape("States and frame rate of " + nameOf(game)) + "</title>\n<desc id=\"" + id + "d\">" +
           escape(describe(session, game)) + "</desc>\n" + Drawing(session, game).draw() + "</svg>\n";
}

std::string tabulate(const Session& session, const Game& game) {
    std::string text;
    const auto course = findCourse(session, game);
    if (!course.empty()) {
        text +=
            "<table><caption>States</caption><thead><tr><th scope=\"col\">From line</th><th scope=\"col\">State</th>"
            "<th scope=\"col\">Ticks</th><th scope=\"col\">Out of the foreground</th><th "
            "scope=\"col\">Time</th></tr></thead><tbody>\n";
        for (const Stretch& stretch : course) {
            const Phase& phase = game.timeline.phases[stretch.phase];
            text += "<tr><td>" + std::to_string(phase.firstLine) + "</td><td>" + wordsOf(stretch.state) + "</td><td>" +
                    (stretch.isAssumed ? "not in the log, drawn as " : "") + shortNumber(stretch.length) + "</td><td>" +
                    std::to_string(phase.away) + "</td><td>" + escape(phase.time) + "</td></tr>\n";
        }
        text += "</tbody></table>\n";
    }
    if (!game.timeline.samples.empty()) {
        text += "<table class=\"samples\"><caption>Frame rates</caption><thead><tr><th scope=\"col\">From line</th><th "
                "scope=\"col\">Samples</th><th scope=\"col\">Mean</th><th scope=\"col\">Lowest</th><th "
                "scope=\"col\">Highest</th><th scope=\"col\">Do not count</th></tr></thead><tbody>\n";
        for (const SampleGroup& group : game.timeline.samples) {
            text += "<tr><td>" + std::to_string(group.line) + "</td><td>" + std::to_string(group.count) + "</td><td>" +
                    shortNumber(group.mean()) + "</td><td>" + shortNumber(group.lowest) + "</td><td>" +
                    shortNumber(group.highest) + "</td><td>" + std::to_string(group.rejected) + "</td></tr>\n";
        }
        text += "</tbody></table>\n";
    }
    return text;
}

} // namespace brisk::logbook
