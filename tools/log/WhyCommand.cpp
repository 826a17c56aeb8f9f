#include "tools/log/LogFile.h"
#include "tools/log/LogReader.h"
#include "tools/log/WhyJson.h"
#include "tools/log/WhyOptions.h"
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
std::uint64_t countSessions(const std::vector<std::string>& logs) {
    std::uint64_t sessions = 0;
    NoOutput none;
    for (const std::string& log : logs) {
        LogReader reader(none, sessions);
        if (readLog(log, reader)) {
            sessions = reader.sessionCount();
        }
    }
    return sessions;
}

std::unique_ptr<WhyOutput> makeOutput(const WhyOptions& options, const Selection& selection,
                                      const DatabaseFacts* facts) {
    if (options.format == "json") {
        return std::make_unique<WhyJson>(std::cout, selection, facts, options.redacts);
    }
    return std::make_unique<WhyText>(std::cout, selection, facts, options.redacts, options.hasColours);
}

int fail(const WhyOptions& options, const std::string& path, const std::string& fault) {
    Redaction redaction;
    std::cerr << "brisklog: " << (options.redacts ? redaction.apply(path) : path) << ": " << fault << '\n';
    return kUnreadable;
}

} // namespace

int runWhy(const WhyOptions& options) {
    std::optional<DatabaseFacts> facts;
    if (!options.database.empty()) {
        auto text = readWholeFile(options.database);
        if (!text) {
            return fail(options, options.database, "cannot be read");
        }
        facts = readDatabaseFacts(options.database, std::move(*text));
        if (facts->fault) {
            fail(options, options.database, *facts->fault);
        }
    }
    Selection selection = options.selection;
    if (options.isLastOnly) {
        selection.session = countSessions(options.logs);
    }
    const auto output = makeOutput(options, selection, facts ? &*facts : nullptr);
    bool isReadable = true;
    std::uint64_t sessions = 0;
    for (const std::string& log : options.logs) {
        output->beginLog(log);
        LogReader reader(*output, sessions);
        if (!readLog(log, reader)) {
            fail(options, log, "cannot be read");
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
