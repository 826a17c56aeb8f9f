#include "tools/log/ReportCommand.h"

#include "tools/log/LogFile.h"
#include "tools/log/LogReader.h"
#include "tools/log/Redaction.h"
#include "tools/log/ReportPage.h"
#include "tools/log/WhyOptions.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>

namespace brisk::logbook {

namespace {

constexpr std::uint64_t kWholeLog = 20'000; // lines; of a longer one only those around the proofs are shown
constexpr std::uint64_t kAround = 5;
constexpr std::size_t kMaximumGames = 500;
constexpr std::size_t kMaximumRuns = 500;
constexpr std::size_t kLongestLine = 2000; // bytes

class Collector final : public VerdictSink {
public:
    void onGame(const Session& /*session*/, const Game& game) override {
        offers += isOffered(game) ? 1U : 0U;
        if (games.size() + shown < kMaximumGames) {
            games.push_back(game);
        } else {
            ++content.omittedGames;
        }
    }
    void onSession(const Session& session) override {
        shown += games.size();
        if (content.runs.size() < kMaximumRuns || !games.empty()) {
            content.runs.push_back({session, std::move(games)});
        }
        games.clear();
    }

    ReportContent content;
    std::uint64_t offers = 0;

private:
    std::vector<Game> games;
    std::size_t shown = 0;
};

void readLines(const std::string& path, ReportContent& content) {
    std::set<std::uint64_t> wanted;
    if (content.lineCount > kWholeLog) {
        for (const std::uint64_t line : findProvingLines(content)) {
            for (std::uint64_t near = line - std::min(line, kAround); near <= line + kAround; ++near) {
                wanted.insert(near);
            }
        }
    }
    LineReader reader([&](std::string_view line, std::uint64_t number, bool /*isWhole*/) {
        if (content.lineCount <= kWholeLog || wanted.contains(number)) {
            if (line.ends_with('\r')) {
                line.remove_suffix(1);
            }
            content.lines.emplace(number, line.substr(0, kLongestLine));
        }
    });
    readLog(path, reader);
}

} // namespace

int runReport(const ReportOptions& options) {
    Redaction redaction;
    const auto shown = [&](const std::string& text) { return options.redacts ? redaction.apply(text) : text; };
    Collector collector;
    LogReader reader(collector);
    if (!readLog(options.log, reader)) {
        std::cerr << "brisklog: " << shown(options.log) << ": cannot be read\n";
        return kUnreadable;
    }
    if (reader.sessionCount() == 0) {
        std::cerr << "brisklog: there is no session of the service in it\n";
        return kNoSession;
    }
    collector.content.log = options.log;
    collector.content.lineCount = reader.lineCount();
    readLines(options.log, collector.content);
    std::ofstream file(std::filesystem::path(std::u8string(options.output.begin(), options.output.end())),
                       std::ios::binary);
    file << shown(makePage(collector.content));
    if (!file.flush()) {
        std::cerr << "brisklog: " << shown(options.output) << ": cannot be written\n";
        return kUnreadable;
    }
    return collector.offers > 0 ? kOffered : kNotOffered;
}

} // namespace brisk::logbook
