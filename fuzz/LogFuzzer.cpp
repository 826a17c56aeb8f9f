#include "fuzz/Fuzzing.h"
#include "tools/log/Explanation.h"
#include "tools/log/LogReader.h"
#include "tools/log/ReportPage.h"
#include "tools/log/WhyJson.h"
#include "tools/log/WhyText.h"

#include <sstream>

#include <nlohmann/json.hpp>

// The bytes of a log, or of what somebody takes for one.

namespace brisk::logbook {
namespace {

template <class Output, class... Options>
std::string printed(std::string_view log, std::size_t piece, Options... options) {
    std::ostringstream text;
    const Selection all;
    Output output(text, all, nullptr, options...);
    output.beginLog("brisk.log");
    LogReader reader(output);
    for (std::size_t at = 0; at < log.size(); at += piece) {
        reader.feed(log.substr(at, piece));
    }
    reader.finish();
    output.endLog(reader);
    output.finish();
    return text.str();
}

// Keeps everything, and looks whether it can be.
class Checks final : public VerdictSink {
public:
    void onGame(const Session& session, const Game& game) override {
        check(explain(session, game), session);
        fuzzing::require(game.firstLine <= game.lastLine, "a game's lines in their order");
        fuzzing::require(isOffered(game) == (findReason(game) == Reason::Offer), "one reason for an offer");
        games.push_back(game);
    }
    void onSession(const Session& session) override {
        check(explain(session), session);
        fuzzing::require(session.number == content.runs.size() + 1, "sessions in their order");
        fuzzing::require(session.games == games.size(), "a session's games before its end");
        content.runs.push_back({session, std::move(games)});
        games.clear();
    }
    void onDecision(const Session& session, const Game& game) override {
        fuzzing::require(!explain(session, game).verdict.empty(), "words for a decision");
    }

    ReportContent content;

private:
    static void check(const Explanation& words, const Session& session) {
        fuzzing::require(!words.verdict.empty(), "a verdict");
        std::uint64_t last = 0;
        for (const ProvingLine& line : words.lines) {
            fuzzing::require(line.line >= last && line.lastLine >= line.line && line.lastLine <= session.lastLine,
                             "proving lines of the session in their order");
            last = line.line;
        }
    }

    std::vector<Game> games;
};

} // namespace
} // namespace brisk::logbook

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace brisk::logbook;
    const std::string_view log = brisk::fuzzing::toText(data, size);
    const std::string json = printed<WhyJson>(log, size + 1);
    brisk::fuzzing::require(nlohmann::json::accept(json), "JSON");
    brisk::fuzzing::requireEqual(printed<WhyJson>(log, 7), json, "the same however the bytes come");
    brisk::fuzzing::require(printed<WhyText>(log, size + 1, false).find('\x1B') == std::string::npos,
                            "nothing that steers a terminal");
    Checks checks;
    LogReader reader(checks);
    reader.feed(log);
    reader.finish();
    brisk::fuzzing::require(!makePage(checks.content).empty(), "a page");
    return 0;
}
