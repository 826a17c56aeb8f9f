#include "tools/log/WhyCommand.h"

#include "tools/console/Files.h"
#include "tools/log/ExitCodes.h"
#include "tools/log/LogFile.h"
#include "tools/log/LogReader.h"
#include "tools/log/WhyJson.h"
#include "tools/log/WhyText.h"

#include <iostream>
#include <memory>
#include <optional>

namespace brisk::logbook {

namespace {

// Only counts.
class NoOutput final : public VerdictSink {
public:
    void onGame(const Session& /*session*/, const Game& /*game*/) override {}
    void onSession(const Session& /*session*/) override {}
};

// How many sessions the logs hold; those that cannot be read hold none.
std::uint64_t countSessions(std::vector<LogFile>& logs) {
    std::uint64_t sessions = 0;
    NoOutput none;
    for (LogFile& log : logs) {
        LogReader reader(none, sessions);
        if (log.read(reader)) {
            sessions = reader.sessionCount();
        }
    }
    return sessions;
}

std::unique_ptr<WhyOutput> makeOutput(const WhyOptions& options, const Selection& selection,
                                      const DatabaseFacts* facts) {
    if (options.format == "json") {
        return std::make_unique<WhyJson>(std::cout, selection, facts);
    }
    return std::make_unique<WhyText>(std::cout, selection, facts, options.hasColours);
}

int fail(const std::string& what, const std::string& fault) {
    std::cerr << "brisklog: " << what << ": " << fault << '\n';
    return kUnreadable;
}

} // namespace

int runWhy(const WhyOptions& options) {
    std::vector<LogFile> logs;
    for (const std::string& log : options.logs) {
        logs.emplace_back(log, options.isLastOnly || options.redacts);
    }
    Redaction redaction;
    if (options.redacts) {
        redaction.learn(options.database);
        for (LogFile& log : logs) {
            learnNames(log, redaction);
        }
    }
    const auto shown = [&](const std::string& path) { return options.redacts ? redaction.apply(path) : path; };
    std::optional<DatabaseFacts> facts;
    if (!options.database.empty()) {
        auto text = readFile(options.database);
        if (!text) {
            return fail(shown(options.database), "cannot be read");
        }
        facts = readDatabaseFacts(options.database, std::move(*text));
        if (facts->fault) {
            return fail(shown(options.database), *facts->fault);
        }
    }
    Selection selection = options.selection;
    if (options.isLastOnly) {
        selection.session = countSessions(logs);
    }
    const auto output = makeOutput(options, selection, facts ? &*facts : nullptr);
    bool isReadable = true;
    std::uint64_t sessions = 0;
    for (LogFile& log : logs) {
        output->beginLog(shown(log.path()));
        LogReader reader(*output, sessions, options.redacts ? &redaction : nullptr);
        if (!log.read(reader)) {
            fail(shown(log.path()), "cannot be read");
            isReadable = false;
            continue;
        }
        output->endLog(reader);
        sessions = reader.sessionCount();
    }
    output->finish();
    if (!isReadable) {
        return kUnreadable;
    }
    if (sessions == 0 || selection.session.value_or(sessions) > sessions || selection.session == 0U) {
        std::cerr << "brisklog: there is no " << (sessions == 0 ? "session of the service in it" : "such session")
                  << '\n';
        return kNoSession;
    }
    return output->offers > 0 ? kOffered : kNotOffered;
}

} // namespace brisk::logbook
