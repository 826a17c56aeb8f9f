// Pages of the kept logs: well-formed, whole without anything else, and with the log's numbers.
#include "support/TemporaryFolder.h"
#include "tools/log/ReportCommand.h"
#include "tools/log/StoredLogs.h"
#include "tools/log/Verdicts.h"

#include <gmock/gmock.h>

#include <regex>
#include <set>

namespace brisk::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

std::string toPathText(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

class ReportPageTest : public ::testing::Test {
protected:
    std::string pageOf(const std::string& name, int exitCode, bool redacts = false) {
        const auto log = placeOfLog(name);
        EXPECT_EQ(logbook::runReport({toPathText(log), toPathText(page()), redacts}), exitCode) << name;
        return readFile(page());
    }
    std::filesystem::path page() const { return folder / "report.html"; }

    TemporaryFolder folder;
};

// What keeps a text from being XML; empty when nothing does.
std::string findFault(const std::string& text) {
    std::vector<std::string> open;
    static const std::regex tag(R"re(^<(/?)([A-Za-z][\w:-]*)((?:\s+[\w:-]+="[^"<]*")*)\s*(/?)>)re");
    static const std::regex entity("^&(amp|lt|gt|quot);");
    for (std::size_t at = text.starts_with("<!DOCTYPE html>") ? 15 : 0; at < text.size();) {
        const auto begin = text.begin() + static_cast<std::ptrdiff_t>(at);
        std::smatch match;
        if (text[at] == '<') {
            const std::size_t end = text.find('>', at);
            const auto stop =
                end == std::string::npos ? text.end() : text.begin() + static_cast<std::ptrdiff_t>(end + 1);
            if (!std::regex_search(begin, stop, match, tag)) {
                return "no tag: " + text.substr(at, 40);
            }
            if (match[1].length() > 0) {
                if (open.empty() || open.back() != match[2]) {
                    return "closes what is not open: " + match.str();
                }
                open.pop_back();
            } else if (match[4].length() == 0) {
                open.push_back(match[2]);
            }
            at += static_cast<std::size_t>(match.length());
        } else if (text[at] == '&') {
            if (!std::regex_search(begin, text.begin() + static_cast<std::ptrdiff_t>(std::min(at + 8, text.size())),
                                   match, entity)) {
                return "no entity: " + text.substr(at, 10);
            }
            ++at;
        } else {
            ++at;
        }
    }
    return open.empty() ? "" : "never closed: " + open.back();
}

std::vector<std::string> findAll(const std::string& text, const std::string& pattern) {
    std::vector<std::string> found;
    const std::regex expression(pattern);
    for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end; ++match) {
        found.push_back((*match)[1]);
    }
    return found;
}

TEST_F(ReportPageTest, EveryLogsPageIsWellFormedAndItsLinksLeadSomewhere) {
    for (const auto& [name, verdicts] : expectedVerdicts()) {
        bool isOffered = false;
        for (const std::string& verdict : verdicts) {
            isOffered = isOffered || verdict.find(" offer offer ") != std::string::npos;
        }
        const std::string page = pageOf(name, isOffered ? 0 : 1);
        EXPECT_EQ(findFault(page), "") << name;
        EXPECT_THAT(page, Not(HasSubstr("<script"))) << name;
        EXPECT_THAT(findAll(page, R"re((?:src|href)="([^#][^"]*)")re"), IsEmpty()) << name;
        const auto ids = findAll(page, R"re( id="([^"]*)")re");
        const std::set<std::string> places(ids.begin(), ids.end());
        EXPECT_EQ(places.size(), ids.size()) << name;
        for (const std::string& link : findAll(page, R"re(href="#([^"]*)")re")) {
            EXPECT_TRUE(places.contains(link)) << name << " " << link;
        }
    }
}

TEST_F(ReportPageTest, NumbersAreThoseOfTheLog) {
    const std::string page = pageOf("rejected-samples", 1);
    // 40, 14, 301 and 39 in two measuring periods; a period of three.
    EXPECT_THAT(page, HasSubstr("<td>1</td><td>14</td><td>14</td><td>14</td><td>1</td>"));
    EXPECT_THAT(page, HasSubstr("<td>1</td><td>301</td><td>301</td><td>301</td><td>1</td>"));
    EXPECT_THAT(page, HasSubstr("<td>1</td><td>40</td><td>40</td><td>40</td><td>0</td>"));
    EXPECT_EQ(findAll(page, R"re((<circle class="rejected"))re").size(), 2u);
    EXPECT_THAT(page, HasSubstr("2 samples count, 2 do not. The average is 39."));
    // The log itself, each line with its number.
    const Lines lines = splitLines(logOf("rejected-samples"));
    for (std::size_t line = 0; line < lines.size(); ++line) {
        EXPECT_THAT(page, HasSubstr("<li id=\"l" + std::to_string(line + 1) + "\"><span class=\"number\">" +
                                    std::to_string(line + 1) + "</span>" + lines[line].substr(0, 5)));
    }
}

TEST_F(ReportPageTest, SampleBehindATickOutOfTheForegroundStandsAtItsOwnTick) {
    const auto xOf = [this](const std::string& text) {
        writeFile(folder / "x.log", text);
        logbook::runReport({toPathText(folder / "x.log"), toPathText(page()), false});
        std::vector<double> places;
        for (const std::string& x : findAll(readFile(page()), R"re((?:points="| )([\d.]+),[\d.]+)re")) {
            places.push_back(std::stod(x));
        }
        return places;
    };
    const std::string log = extended(logOf("offer-configured"), "Brisk : FPS = 40",
                                     "Brisk : foreground window doesn't belong to tracked process.\n");
    const auto places = xOf(log);
    ASSERT_GE(places.size(), 3u);
    // The second stands two ticks behind the first, the third one behind the second.
    EXPECT_NEAR(places[1] - places[0], 2 * (places[2] - places[1]), 0.1);
}

TEST_F(ReportPageTest, LimitAndAverageStandBesideTheFrameRates) {
    const std::string page = pageOf("offer-configured", 0);
    EXPECT_THAT(page, HasSubstr(">an offer needs less than 51</text>")); // 0.85 of 60
    EXPECT_THAT(page, HasSubstr(">average 40</text>"));
    EXPECT_THAT(page, HasSubstr("<span class=\"offer\">offer</span>"));
}

TEST_F(ReportPageTest, TextsOfTheLogAreNoMarkup) {
    const auto log = folder / "hostile.log";
    writeFile(log, "Brisk 1.09 : started\nBrisk : titles DB processed.\n"
                   "Brisk : onAppStarted, p1 = 1, p2 = 0x1\nBrisk : waiting for activation, GameID 1, PID 0x1\n"
                   "Brisk : shouldStartTracking\nBrisk : publisher: '<b>\"&\x01\xFF', binary name: '<i>.exe'.\n"
                   "Brisk : config for <i>.exe was not found. Skip.\nBrisk : finished\n");
    EXPECT_EQ(logbook::runReport({toPathText(log), toPathText(page()), false}), 1);
    const std::string html = readFile(page());
    EXPECT_EQ(findFault(html), "");
    EXPECT_THAT(html, HasSubstr("&lt;b&gt;&quot;&amp;\xEF\xBF\xBD\xEF\xBF\xBD"));
}

TEST_F(ReportPageTest, UnreadableAndForeignFilesHaveTheirExitCodes) {
    EXPECT_EQ(logbook::runReport({toPathText(folder / "none.log"), toPathText(page()), false}), 2);
    writeFile(folder / "foreign.log", "nothing of ours\n");
    EXPECT_EQ(logbook::runReport({toPathText(folder / "foreign.log"), toPathText(page()), false}), 3);
    EXPECT_EQ(
        logbook::runReport({toPathText(placeOfLog("unknown-id")), toPathText(folder / "none" / "report.html"), false}),
        2);
}

} // namespace
} // namespace brisk::testing
