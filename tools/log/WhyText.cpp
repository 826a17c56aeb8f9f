#include "tools/log/WhyText.h"

#include "tools/log/DatabaseView.h"

namespace brisk::logbook {

namespace {

constexpr char kGreen[] = "\x1B[32m";
constexpr char kYellow[] = "\x1B[33m";
constexpr char kBold[] = "\x1B[1m";

// Bytes that would steer a terminal are not shown.
std::string printable(const std::string& text) {
    std::string shown;
    for (const char byte : text) {
        const auto value = static_cast<unsigned char>(byte);
        shown += value < 0x20 || value == 0x7F ? '?' : byte;
    }
    return shown;
}

std::string toText(const ProvingLine& line, const std::string& shift) {
    std::string text =
        shift + std::to_string(line.line) + ": " + (line.time.empty() ? "" : line.time + " ") + printable(line.text);
    if (line.times > 1) {
        text += "  (" + std::to_string(line.times) + " times, to line " + std::to_string(line.lastLine) + ")";
    }
    return text + "\n";
}

std::string toText(const Pass& pass) {
    std::string text = "  All games adjusted in one pass, lines " + std::to_string(pass.firstLine) + " to " +
                       std::to_string(pass.lastLine) + ": " + outcomeOf(pass) + "\n";
    if (pass.isToastRefused) {
        text += "    Windows refused to show the outcome.\n";
    }
    for (const PassTitle& title : pass.titles) {
        text += "    " + printable(title.binaryName) + ": " + codeOf(title.outcome) + "\n";
        if (title.outcome != TitleOutcome::NothingToDo) {
            for (const ProvingLine& line : title.lines) {
                text += toText(line, "      ");
            }
        }
    }
    if (pass.omittedTitles > 0) {
        text += "    " + std::to_string(pass.omittedTitles) +
                " more titles are left out here. All of them: " + countsOf(pass) + ".\n";
    }
    return text;
}

} // namespace

std::string toText(const Explanation& words, const std::string& shift) {
    std::string text = shift + printable(words.verdict) + "\n";
    for (const ProvingLine& line : words.lines) {
        text += toText(line, shift + "  ");
    }
    if (!words.next.empty()) {
        text += shift + "Next: " + printable(words.next) + "\n";
    }
    return text;
}

std::string WhyText::coloured(const char* colour, const std::string& text) const {
    return colours ? colour + text + "\x1B[0m" : text;
}

void WhyText::open(const Session& session) {
    if (!isOpen) {
        const std::string version =
            session.version.empty() ? ", whose start the log does not have" : ", Brisk " + session.version;
        const std::string time = session.beginTime.empty() ? "" : ", " + session.beginTime;
        print(coloured(kBold, log + ": session " + std::to_string(session.number) + version + time + ", from line " +
                                  std::to_string(session.firstLine)) +
              "\n");
    }
    isOpen = true;
}

void WhyText::printGame(const Session& session, const Game& game) {
    open(session);
    const bool isOffer = isOffered(game);
    print(
        "  " + printable(nameOf(game)) + ", lines " + std::to_string(game.firstLine) + " to " +
        std::to_string(game.lastLine) + ": " +
        coloured(isOffer ? kGreen : kYellow, isOffer ? "offer" : std::string("no offer, ") + codeOf(findReason(game))) +
        "\n" + toText(explain(session, game), "    "));
    if (facts()) {
        for (const std::string& sentence : compare(game, *facts()).sentences) {
            print("    " + printable(sentence) + "\n");
        }
    }
}

void WhyText::printSession(const Session& session) {
    open(session);
    std::string text;
    for (const auto& [name, value] : session.head) {
        text += name == "warning" ? "  The recording warns: " + printable(value) + "\n" : "";
    }
    for (const Pass& pass : session.passes) {
        text += toText(pass);
    }
    if (session.omittedPasses > 0) {
        text += "  " + std::to_string(session.omittedPasses) + " more passes over all games are left out here.\n";
    }
    for (const ProvingLine& press : session.loosePresses) {
        text += "  An answer to an offer that the log does not have:\n" + toText(press, "    ");
    }
    if (session.unknownCount > 0) {
        text += "  Lines that are not the service's (" + std::to_string(session.unknownCount) + "):\n";
        for (const ProvingLine& line : session.unknownLines) {
            text += toText(line, "    ");
        }
    }
    if (session.source != FrameRateSource::Unknown) {
        text += "  " + explainSource(session) + "\n";
    }
    const bool isNormal = session.end == SessionEnd::Normal;
    print(text + "  End: " + coloured(isNormal ? kGreen : kYellow, codeOf(session.end)) + "\n" +
          toText(explain(session), "    "));
    isOpen = false;
}

void WhyText::endLog(const LogReader& reader) {
    if (reader.strayCount() > 0) {
        std::string text = log + ": lines that belong to no session (" + std::to_string(reader.strayCount()) + "):\n";
        for (const ProvingLine& line : reader.strayLines()) {
            text += toText(line, "    ");
        }
        print(text);
    }
    if (reader.omittedSessions() > 0) {
        print(log + ": " + std::to_string(reader.omittedSessions()) +
              " more starts of a second service are left out here.\n");
    }
}

} // namespace brisk::logbook
