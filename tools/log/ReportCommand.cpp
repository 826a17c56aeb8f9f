#include "tools/log/ReportCommand.h"

#include "tools/console/Files.h"
#include "tools/log/ExitCodes.h"
#include "tools/log/LogFile.h"
#include "tools/log/LogReader.h"
#include "tools/log/Redaction.h"
#include "tools/log/ReportPage.h"

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
constexpr std::size_t kMaximumTitles = 5000; // of passes over all games
constexpr std::size_t kLongestLine = 2000;   // bytes

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
            limitTitles(content.runs.back().session);
        }
        games.clear();
    }

    ReportContent content;
    std::uint64_t offers = 0;

private:
    void limitTitles(Session& session) {
        for (Pass& pass : session.passes) {
            const std::size_t kept = std::min(pass.titles.size(), kMaximumTitles - titles);
            pass.omittedTitles += pass.titles.size() - kept;
            pass.titles.resize(kept);
            titles += kept;
        }
    }

    std::vector<Game> games;
    std::size_t shown = 0;
    std::size_t titles = 0; // shown
};

void readLines(LogFile& log, const Redaction* redaction, ReportContent& content) {
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
            line = line.substr(0, kLongestLine);
            content.lines.emplace(number, redaction ? redaction->apply(line) : std::string(line));
        }
    });
    log.read(reader);
}

// Also by another name of it.
bool isSameFile(const std::string& one, const std::string& other) {
    std::error_code error;
    return std::filesystem::equivalent(fromUtf8(one), fromUtf8(other), error);
}

} // namespace

int runReport(const ReportOptions& options) {
    LogFile log(options.log, true);
    Redaction redaction;
    if (options.redacts) {
        redaction.learn(options.output);
        learnNames(log, redaction);
    }
    const auto shown = [&](const std::string& text) { return options.redacts ? redaction.apply(text) : text; };
    const auto fail = [&shown](const std::string& path, const char* fault) {
        std::cerr << "brisklog: " << shown(path) << ": " << fault << '\n';
        return kUnreadable;
    };
    if (!log.isStandardInput() && isSameFile(options.log, options.output)) {
        return fail(options.output, "is the log itself, and the page would replace it");
    }
    Collector collector;
    LogReader reader(collector, 0, options.redacts ? &redaction : nullptr);
    if (!log.read(reader)) {
        return fail(options.log, "cannot be read");
    }
    if (reader.sessionCount() == 0) {
        std::cerr << "brisklog: there is no session of the service in it\n";
        return kNoSession;
    }
    collector.content.log = shown(options.log);
    collector.content.lineCount = reader.lineCount();
    readLines(log, options.redacts ? &redaction : nullptr, collector.content);
    std::ofstream file(fromUtf8(options.output), std::ios::binary);
    file << makePage(collector.content);
    if (!file.flush()) {
        return fail(options.output, "cannot be written");
    }
    return collector.offers > 0 ? kOffered : kNotOffered;
}

} // namespace brisk::logbook
