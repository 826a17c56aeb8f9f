// `brisklog why` and `brisklog report` as commands: what they read, write, hide and refuse.
#include "support/TemporaryFolder.h"
#include "tools/console/Program.h"
#include "tools/log/Follow.h"
#include "tools/log/ReportCommand.h"
#include "tools/log/StoredLogs.h"
#include "tools/log/WhyCommand.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <iostream>
#include <sstream>

namespace brisk::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

// A stream's buffer replaced for a while.
class Replaced {
public:
    Replaced(std::ios& replaced, std::streambuf* buffer) : stream(replaced), earlier(stream.rdbuf(buffer)) {}
    Replaced(const Replaced&) = delete;
    Replaced& operator=(const Replaced&) = delete;
    ~Replaced() {
        stream.clear();
        stream.rdbuf(earlier);
    }

private:
    std::ios& stream;
    std::streambuf* earlier;
};

class LogCommandTest : public ::testing::Test {
protected:
    struct Outcome {
        int exitCode;
        std::string out;
        std::string error;
    };

    template <class Command>
    static Outcome run(const Command& command, const std::string& input = "") {
        std::istringstream in(input);
        std::ostringstream out;
        std::ostringstream error;
        const Replaced first(std::cin, in.rdbuf());
        const Replaced second(std::cout, out.rdbuf());
        const Replaced third(std::cerr, error.rdbuf());
        const int exitCode = command();
        return {exitCode, out.str(), error.str()};
    }

    // Runs `why` on the log, "-" for the input, with the options that the function sets.
    template <class Set>
    static Outcome why(const std::string& log, const Set& set, const std::string& input = "") {
        logbook::WhyOptions options;
        options.logs = {log};
        set(options);
        return run([&options] { return logbook::runWhy(options); }, input);
    }
    static void setNothing(logbook::WhyOptions& /*options*/) {}
    static void redact(logbook::WhyOptions& options) { options.redacts = true; }

    Outcome report(const std::string& log, const std::string& output, bool redacts = false,
                   const std::string& input = "") const {
        return run([&] { return logbook::runReport({log, output, redacts}); }, input);
    }

    // The path of a new file.
    std::string put(const std::string& name, const std::string& text) const {
        writeFile(folder / name, text);
        return path(name);
    }
    std::string path(const std::string& name) const {
        const std::u8string text = (folder / name).u8string();
        return {text.begin(), text.end()};
    }

    TemporaryFolder folder;
};

TEST_F(LogCommandTest, ReportDoesNotReplaceItsLog) {
    const std::string log = put("x.log", logOf("unknown-id"));
    std::filesystem::create_directory(folder / "sub");
    for (const std::string& output : {log, path("sub/../x.log"), path("./x.log")}) {
        const Outcome outcome = report(log, output);
        EXPECT_EQ(outcome.exitCode, 2) << output;
        EXPECT_THAT(outcome.error, HasSubstr("is the log itself"));
        EXPECT_EQ(readFile(folder / "x.log"), logOf("unknown-id"));
    }
}

TEST_F(LogCommandTest, StandardInputIsReadAsOftenAsItIsNeeded) {
    const std::string log = logOf("unknown-id") + logOf("offer-configured");
    const Outcome last = why("-", [](logbook::WhyOptions& options) { options.isLastOnly = true; }, log);
    EXPECT_EQ(last.exitCode, 0);
    EXPECT_THAT(last.out, HasSubstr("-: session 2"));
    EXPECT_THAT(last.out, Not(HasSubstr("session 1")));
    EXPECT_EQ(why("-", setNothing, log).exitCode, 0);
    EXPECT_EQ(why("-", redact, log).exitCode, 0);
    EXPECT_EQ(report("-", path("page.html"), false, log).exitCode, 0);
    EXPECT_THAT(readFile(folder / "page.html"), HasSubstr("<li id=\"l10\">"));
}

TEST_F(LogCommandTest, DatabaseThatCannotBeReadToItsEndIsRefusedWithItsPlace) {
    const std::string log = put("x.log", logOf("unknown-id"));
    const auto answer = [&](const std::string& text) {
        const std::string database = put("db.json", text);
        return why(log, [&database](logbook::WhyOptions& options) { options.database = database; });
    };
    const Outcome malformed = answer("[\n {\"id\": 1,");
    EXPECT_EQ(malformed.exitCode, 2);
    EXPECT_THAT(malformed.error, HasSubstr("db.json: line 2, column "));
    EXPECT_EQ(malformed.out, "");
    const Outcome object = answer("\n{}");
    EXPECT_EQ(object.exitCode, 2);
    EXPECT_THAT(object.error, HasSubstr("db.json: line 2, column 1: "));
    EXPECT_EQ(answer("[]").exitCode, 1);
}

TEST_F(LogCommandTest, DatabaseThatIsNoFileIsNamed) {
    const std::string log = put("x.log", logOf("unknown-id"));
    std::filesystem::create_directory(folder / "titles");
    for (const std::string& database : {path("titles"), path("missing.json")}) {
        const Outcome outcome = why(log, [&](logbook::WhyOptions& options) { options.database = database; });
        EXPECT_EQ(outcome.exitCode, 2);
        EXPECT_EQ(outcome.error, "brisklog: " + database + ": cannot be read\n");
    }
}

TEST_F(LogCommandTest, GameIsFoundByItsHexadecimalId) {
    const std::string log = put("x.log", logOf("offer-configured"));
    for (const char* id : {"0x3e9", "0X3E9", "1001"}) {
        const auto select = [id](logbook::WhyOptions& options) { options.selection.game = id; };
        EXPECT_EQ(why(log, select).exitCode, 0) << id;
    }
}

TEST_F(LogCommandTest, OutputThatCannotBeWrittenIsNoSuccess) {
    struct : std::streambuf {
    } full; // takes nothing
    std::ostringstream error;
    const Replaced out(std::cout, &full);
    const Replaced other(std::cerr, error.rdbuf());
    const int exitCode = runProgram("brisklog", [](const Console& /*console*/) {
        std::cout << "a verdict";
        return 0;
    });
    EXPECT_EQ(exitCode, 2);
    EXPECT_EQ(error.str(), "brisklog: the standard output cannot be written\n");
}

TEST_F(LogCommandTest, LogThatBeginsAnewIsFollowedFromItsFront) {
    const std::string log = put("x.log", repeated(logOf("unknown-id"), 3));
    std::ostringstream out;
    std::vector<std::string> steps{logOf("unknown-id"), before(logOf("unknown-id"), "Brisk : onAppStarted")};
    EXPECT_EQ(logbook::follow(log, out,
                              [&] {
                                  if (steps.empty()) {
                                      return false;
                                  }
                                  writeFile(folder / "x.log", steps.back());
                                  steps.pop_back();
                                  return true;
                              }),
              0);
    EXPECT_THAT(out.str(), ::testing::StartsWith("game 1002: no offer, unknown-id. "));
    EXPECT_THAT(out.str(), HasSubstr("\nThe service has ended: normal. "));
}

class RedactionCommandTest : public LogCommandTest {
protected:
    // What `why` prints, as text and as JSON, and the page; the JSON has to be JSON.
    std::string hidden(const std::string& text) const {
        const std::string log = put("x.log", text);
        std::string all = why(log, redact).out;
        const auto redactJson = [](logbook::WhyOptions& options) {
            options.redacts = true;
            options.format = "json";
        };
        const std::string json = why(log, redactJson).out;
        EXPECT_TRUE(nlohmann::json::accept(json)) << json;
        report(log, path("page.html"), true);
        const std::string page = readFile(folder / "page.html");
        // A tag that is never closed, or an end of one that is none.
        EXPECT_THAT(page, Not(HasSubstr("(user)/li>")));
        EXPECT_THAT(page, ::testing::EndsWith("</main>\n</body>\n</html>\n"));
        return all + json + page;
    }

    static std::string withPath(const std::string& settings) {
        return changed(logOf("no-configuration"), "C:\\Machine\\Game\\Settings.ini", settings);
    }
};

TEST_F(RedactionCommandTest, PathThatIsCutOrHasATabIsHidden) {
    const std::string log = withPath("C:\\Users\\maxine\\x.ini");
    EXPECT_THAT(hidden(before(log, "maxine\\x.ini")), HasSubstr("checking path 'C:\\Users\\"));
    EXPECT_THAT(hidden(before(log, "xine\\x.ini")), Not(HasSubstr("\\ma")));
    EXPECT_THAT(hidden(withPath("C:\\Users\\\tmaxine\\x.ini")), Not(HasSubstr("maxine")));
}

TEST_F(RedactionCommandTest, FoldersOfUsersAreKnownOnServersAndInOtherLanguages) {
    for (const char* path : {"\\\\srv\\homes\\maxine\\x.ini", "\\\\srv\\maxine$\\x.ini", "C:\\Benutzer\\maxine\\x.ini",
                             "C:\\Utilisateurs\\maxine\\x.ini", "\\\\srv\\users$\\maxine\\x.ini",
                             "C:\\Dokumente und Einstellungen\\maxine\\x.ini", "C:\\Users\\maxine"}) {
        const std::string text = hidden(withPath(path));
        EXPECT_THAT(text, Not(HasSubstr("maxine"))) << path;
        EXPECT_THAT(text, HasSubstr("(user)")) << path;
        EXPECT_THAT(text, HasSubstr("not-supported")) << path;
    }
    EXPECT_THAT(hidden(withPath("\\\\srv\\admin$\\x.ini")), HasSubstr("\\srv\\admin$\\x.ini"));
}

TEST_F(RedactionCommandTest, NameIsHiddenBeforeItWasFirstSeenInAPath) {
    const std::string early = "# user: Maxine Muster\n# registry: of Maxine Muster, D:\\saves\\maxine muster.sav\n";
    const std::string text = hidden(early + withPath("C:\\Users\\Maxine Muster\\x.ini"));
    EXPECT_THAT(text, Not(HasSubstr("Maxine")));
    EXPECT_THAT(text, Not(HasSubstr("maxine")));
}

TEST_F(RedactionCommandTest, NameThatIsAWordOfTheServiceLeavesItsLinesReadable) {
    for (const char* name : {"Brisk", "config", "1001", "PID"}) {
        const std::string text = hidden(withPath("C:\\Users\\" + std::string(name) + "\\x.ini"));
        EXPECT_THAT(text, HasSubstr("\"id\": 1001")) << name;
        EXPECT_THAT(text, HasSubstr("\"reason\": \"not-supported\"")) << name;
        EXPECT_THAT(text, Not(HasSubstr("Users\\" + std::string(name)))) << name;
    }
}

} // namespace
} // namespace brisk::testing
