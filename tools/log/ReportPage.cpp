#include "tools/log/ReportPage.h"

#include "tools/log/Chart.h"
#include "tools/log/Explanation.h"
#include "tools/log/Markup.h"
#include "tools/log/ReportStyle.h"

namespace brisk::logbook {

namespace {

std::string link(std::uint64_t line, const ReportContent& content) {
    const std::string number = std::to_string(line);
    return content.lines.contains(line) ? "<a href=\"#l" + number + "\">" + number + "</a>" : number;
}

std::string toMarkup(const Explanation& words, const ReportContent& content) {
    std::string text = "<p>" + escape(words.verdict) + "</p>\n";
    if (!words.next.empty()) {
        text += "<p class=\"next\"><strong>Next:</strong> " + escape(words.next) + "</p>\n";
    }
    text += "<ol class=\"proof\">\n";
    for (const ProvingLine& line : words.lines) {
        text += "<li><span class=\"number\">" + link(line.line, content) + "</span>" +
                (line.time.empty() ? "" : "<span class=\"soft\">" + escape(line.time) + " </span>") +
                escape(line.text) +
                (line.times > 1 ? " <span class=\"soft\">(" + std::to_string(line.times) + " times, to line " +
                                      link(line.lastLine, content) + ")</span>"
                                : "") +
                "</li>\n";
    }
    return words.lines.empty() ? text.substr(0, text.rfind("<ol")) : text + "</ol>\n";
}

std::string verdictOf(const Game& game) {
    return isOffered(game) ? "<span class=\"offer\">offer</span>"
                           : std::string("<span class=\"no-offer\">no offer: ") + codeOf(findReason(game)) + "</span>";
}

std::string idOf(const Session& session, std::size_t game) {
    return "s" + std::to_string(session.number) + "g" + std::to_string(game + 1);
}

std::string overview(const ReportContent& content) {
    std::string text = "<table><caption>Sessions and games</caption><thead><tr><th scope=\"col\">Session</th><th "
                       "scope=\"col\">Game</th><th scope=\"col\">Verdict</th><th scope=\"col\">Lines</th><th "
                       "scope=\"col\">Samples</th><th scope=\"col\">Average</th></tr></thead><tbody>\n";
    for (const ReportContent::Run& run : content.runs) {
        const std::uint64_t number = run.session.number;
        text += "<tr><td><a href=\"#s" + std::to_string(number) + "\">" + std::to_string(number) +
                "</a></td><td></td><td>ended: " + codeOf(run.session.end) + "</td><td>" +
                std::to_string(run.session.firstLine) + " to " + std::to_string(run.session.lastLine) +
                "</td><td></td><td></td></tr>\n";
        for (std::size_t index = 0; index < run.games.size(); ++index) {
            const Game& game = run.games[index];
            text += "<tr><td></td><td><a href=\"#" + idOf(run.session, index) + "\">" + escape(nameOf(game)) +
                    "</a></td><td>" + verdictOf(game) + "</td><td>" + std::to_string(game.firstLine) + " to " +
                    std::to_string(game.lastLine) + "</td><td>" + std::to_string(game.acceptedSamples) + "</td><td>" +
                    (game.averageFps ? std::to_string(*game.averageFps) : "") + "</td></tr>\n";
        }
    }
    text += "</tbody></table>\n";
    if (content.omittedGames > 0) {
        text += "<p>" + std::to_string(content.omittedGames) + " more games are left out.</p>\n";
    }
    return text;
}

std::string showPass(const Pass& pass) {
    std::string text = "<h3>All games adjusted in one pass: " + std::string(outcomeOf(pass)) +
                       "</h3>\n<table><thead><tr><th scope=\"col\">Executable</th><th scope=\"col\">Outcome</th><th "
                       "scope=\"col\">From line</th></tr></thead><tbody>\n";
    for (const PassTitle& title : pass.titles) {
        text += "<tr><td>" + escape(title.binaryName) + "</td><td>" + codeOf(title.outcome) + "</td><td>" +
                (title.lines.empty() ? "" : std::to_string(title.lines.front().line)) + "</td></tr>\n";
    }
    text += "</tbody></table>\n";
    return pass.omittedTitles == 0 ? text
                                   : text + "<p>" + std::to_string(pass.omittedTitles) +
                                         " more titles are left out. All of them: " + countsOf(pass) + ".</p>\n";
}

std::string showHead(const Session& session) {
    if (session.head.empty()) {
        return {};
    }
    std::string text = "<details><summary>The machine, as it was recorded</summary>\n<table><tbody>\n";
    for (const auto& [name, value] : session.head) {
        text += "<tr><th scope=\"row\">" + escape(name) + "</th><td>" + escape(value) + "</td></tr>\n";
    }
    return text + "</tbody></table></details>\n";
}

std::string showRun(const ReportContent::Run& run, const ReportContent& content, std::size_t& charts) {
    const Session& session = run.session;
    std::string text =
        "<section id=\"s" + std::to_string(session.number) + "\">\n<h2>Session " + std::to_string(session.number) +
        (session.version.empty() ? "" : ", Brisk " + escape(session.version)) +
        (session.beginTime.empty() ? "" : ", " + escape(session.beginTime)) + "</h2>\n" +
        toMarkup(explain(session), content) + "<p>" + escape(explainSource(session)) + "</p>\n" + showHead(session);
    for (const auto& [name, value] : session.head) {
        text += name == "warning" ? "<p>The recording warns: " + escape(value) + "</p>\n" : "";
    }
    for (const Pass& pass : session.passes) {
        text += showPass(pass);
    }
    text += "</section>\n";
    for (std::size_t index = 0; index < run.games.size(); ++index) {
        const Game& game = run.games[index];
        text += "<section id=\"" + idOf(session, index) + "\">\n<h3>" + escape(nameOf(game)) + ": " + verdictOf(game) +
                "</h3>\n" + toMarkup(explain(session, game), content) + drawChart(session, game, ++charts) +
                "<details><summary>Numbers</summary>\n" + tabulate(session, game) + "</details>\n</section>\n";
    }
    return text;
}

std::string showLog(const ReportContent& content) {
    std::string text = "<section>\n<h2>The log</h2>\n<details><summary>" + std::to_string(content.lines.size()) +
                       " of " + std::to_string(content.lineCount) + " lines</summary>\n<ol class=\"log\">\n";
    std::uint64_t last = 0;
    for (const auto& [number, line] : content.lines) {
        if (number > last + 1) {
            text += "<li class=\"soft\">...</li>\n";
        }
        text += "<li id=\"l" + std::to_string(number) + "\"><span class=\"number\">" + std::to_string(number) +
                "</span>" + escape(line) + "</li>\n";
        last = number;
    }
    return text + (content.lines.empty() ? "<li>...</li>\n" : "") + "</ol></details>\n</section>\n";
}

} // namespace

std::vector<std::uint64_t> findProvingLines(const ReportContent& content) {
    std::vector<std::uint64_t> numbers;
    const auto add = [&numbers](const Explanation& words) {
        for (const ProvingLine& line : words.lines) {
            numbers.push_back(line.line);
            numbers.push_back(line.lastLine);
        }
    };
    for (const ReportContent::Run& run : content.runs) {
        add(explain(run.session));
        for (const Game& game : run.games) {
            add(explain(run.session, game));
        }
    }
    return numbers;
}

std::string makePage(const ReportContent& content) {
    std::string page = "<!DOCTYPE html>\n<html lang=\"en\" xmlns=\"http://www.w3.org/1999/xhtml\">\n<head>\n<meta "
                       "charset=\"utf-8\"/>\n<meta name=\"viewport\" content=\"width=device-width, "
                       "initial-scale=1\"/>\n<title>" +
                       escape("Brisk: " + content.log) + "</title>\n<style>" + kReportStyle +
                       "</style>\n</head>\n<body>\n<h1>Why there was an offer, or none</h1>\n<p class=\"soft\">" +
                       escape(content.log) + ", " + std::to_string(content.lineCount) + " lines</p>\n<main>\n" +
                       overview(content);
    std::size_t charts = 0;
    for (const ReportContent::Run& run : content.runs) {
        page += showRun(run, content, charts);
    }
    return page + showLog(content) + "</main>\n</body>\n</html>\n";
}

} // namespace brisk::logbook
