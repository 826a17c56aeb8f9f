// brisklog: reads the service's log for those who support its users.
#include "tools/console/Program.h"
#include "tools/log/ExitCodes.h"
#include "tools/log/RecordCommand.h"
#include "tools/log/ReportCommand.h"
#include "tools/log/WhyCommand.h"

#include <iostream>
#include <string>
#include <string_view>

#include <CLI/CLI.hpp>

namespace {

using namespace brisk::logbook;

void addWhy(CLI::App& app, WhyOptions& why, std::uint64_t& session) {
    CLI::App* command = app.add_subcommand("why", "why a game got an offer, or none");
    command->add_option("LOG", why.logs, "logs of the service, or captures of the debugger output")->required();
    CLI::Option* number =
        command->add_option("--session", session, "only this session, counted from 1 through all the logs")
            ->type_name("N")
            ->check([](const std::string& text) {
                const bool isNumber = text != "0" && text.find_first_not_of("0123456789") == std::string::npos;
                return std::string(isNumber ? "" : "sessions are counted from 1");
            });
    command->add_flag("--last", why.isLastOnly, "only the last session")->excludes(number);
    command->add_option("--game", why.selection.game, "only games of this id or name")->type_name("ID|NAME");
    command->add_option("--database", why.database, "the service's title database, to compare with")->type_name("FILE");
    command->add_flag("--redact", why.redacts, "take user names out of paths");
    command->add_option("--format", why.format, "text or json")
        ->check(CLI::IsMember({"text", "json"}))
        ->capture_default_str();
    command->footer("Exit codes: 0 an offer was made, 1 none, 2 unreadable or wrong usage, 3 no session in it.\n"
                    "Examples:\n"
                    "  brisklog why brisk.log\n"
                    "  brisklog why --last --game 1001 --database titles_db.json brisk.log\n"
                    "  brisklog why --redact --format json brisk.log > verdicts.json\n"
                    "docs/log.md explains every line of a log.");
}

void addReport(CLI::App& app, ReportOptions& report) {
    CLI::App* command = app.add_subcommand("report", "the same as one page to look at in a browser");
    command->add_option("LOG", report.log, "a log of the service, or a capture of the debugger output")->required();
    command->add_option("-o,--output", report.output, "the page")->type_name("FILE")->capture_default_str();
    command->add_flag("--redact", report.redacts, "take user names out of paths");
    command->footer("Exit codes: 0 an offer was made, 1 none, 2 unreadable or wrong usage, 3 no session in it.\n"
                    "Example:\n"
                    "  brisklog report --redact brisk.log -o report.html");
}

#ifdef _WIN32
void addRecord(CLI::App& app, RecordOptions& record) {
    CLI::App* command = app.add_subcommand("record", "what the service writes to the debugger output, with times");
    command->add_option("-o,--output", record.output, "the recording; otherwise it is printed")->type_name("FILE");
    command->add_option("COMMAND", record.command, "behind --: the service to start; otherwise the one that runs");
    command->footer("Records until the service ends. Exit codes: 0 recorded, 2 not possible.\n"
                    "Examples:\n"
                    "  brisklog record -o brisk.log -- C:\\Brisk\\brisk.exe -fps 40\n"
                    "  brisklog record -o brisk.log");
}
#endif

int run(int argc, char** argv, const brisk::Console& console) {
    CLI::App program("Tells from the service's log why a game got an offer, or none.", "brisklog");
    WhyOptions why;
    std::uint64_t session = 0;
    addWhy(program, why, session);
    ReportOptions report;
    addReport(program, report);
#ifdef _WIN32
    RecordOptions record;
    addRecord(program, record);
#else
    if (argc > 1 && std::string_view(argv[1]) == "record") {
        std::cerr << "brisklog: record is for Windows, where the service runs\n";
        return kUnreadable;
    }
#endif
    if (const auto exitCode = brisk::readCommandLine(program, argc, argv)) {
        return *exitCode;
    }
#ifdef _WIN32
    if (program.got_subcommand("record")) {
        return runRecord(record);
    }
#endif
    if (program.got_subcommand("report")) {
        return runReport(report);
    }
    if (program.get_subcommand("why")->count("--session") > 0) {
        why.selection.session = session;
    }
    why.hasColours = wantsColours(console);
    return runWhy(why);
}

} // namespace

int main(int argc, char** argv) {
    return brisk::runProgram("brisklog", [&](const brisk::Console& console) { return run(argc, argv, console); });
}
