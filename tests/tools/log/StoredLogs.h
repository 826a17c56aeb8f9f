// The logs of the folder `logs`, and changes to them.
#pragma once

#include "support/Places.h"
#include "support/TextFiles.h"
#include "tools/log/Explanation.h"
#include "tools/log/LogReader.h"

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace brisk::testing {

inline std::filesystem::path placeOfLog(const std::string& name) {
    return place(BRISK_LOGS) / (name + ".log");
}

inline std::string logOf(const std::string& name) {
    return readFile(placeOfLog(name));
}

inline std::size_t findIn(const std::string& log, std::string_view text) {
    const std::size_t at = log.find(text);
    if (at == std::string::npos) {
        throw std::runtime_error("the log has no '" + std::string(text) + "'");
    }
    return at;
}

// The log with the first place of a text replaced.
inline std::string changed(std::string log, std::string_view text, std::string_view by) {
    return log.replace(findIn(log, text), text.size(), by);
}

// The log with more lines behind the first line that begins so.
inline std::string extended(std::string log, std::string_view line, std::string_view more) {
    return log.insert(log.find('\n', findIn(log, line)) + 1, more);
}

inline std::string before(const std::string& log, std::string_view text) {
    return log.substr(0, findIn(log, text));
}

inline std::string from(const std::string& log, std::string_view text) {
    return log.substr(findIn(log, text));
}

inline std::string joined(const std::string& log, const std::string& end) {
    std::string text;
    for (const std::string& line : splitLines(log)) {
        text += line + end;
    }
    return text;
}

inline std::string repeated(const std::string& text, std::size_t times) {
    std::string all;
    for (; times > 0; --times) {
        all += text;
    }
    return all;
}

// The lines of the first tick in which a game is looked for.
inline std::string tickOf(const std::string& name) {
    const std::string log = from(logOf(name), "Brisk : shouldStartTracking");
    return log.substr(0, log.find("Brisk : shouldStartTracking", 1));
}

// The log with its ticks before the game was found replaced.
inline std::string withTicks(const std::string& name, const std::string& ticks) {
    const std::string log = logOf(name);
    return before(log, "Brisk : shouldStartTracking") + ticks + from(log, "Brisk : onAppFinished");
}

// What is said of each game and session.
struct Told {
    std::vector<logbook::Explanation> games;
    std::vector<logbook::Explanation> sessions;
    std::vector<logbook::Session> ends;
};

inline Told toldOf(std::string_view log) {
    struct Sink : logbook::VerdictSink {
        Told told;
        void onGame(const logbook::Session& session, const logbook::Game& game) override {
            told.games.push_back(logbook::explain(session, game));
        }
        void onSession(const logbook::Session& session) override {
            told.sessions.push_back(logbook::explain(session));
            told.ends.push_back(session);
        }
    } sink;
    logbook::LogReader reader(sink);
    reader.feed(log);
    reader.finish();
    return sink.told;
}

} // namespace brisk::testing
