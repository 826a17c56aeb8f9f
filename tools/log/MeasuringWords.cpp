#include "tools/log/GameWords.h"

#include <cstdio>

namespace brisk::logbook {

namespace {

using enum LineKind;

const std::vector<LineKind> kMeasuring{AppStarted, SwitchTo,     ProcessClosed, NotInForeground, ExitCodeFailed,
                                       Sample,     SampleFailed, AppFinished,   Average};

std::vector<ProvingLine> proof(const Game& game, std::vector<LineKind> more) {
    more.insert(more.begin(), kMeasuring.begin(), kMeasuring.end());
    return game.proof.select(more);
}

std::string awayOf(const Game& game) {
    const std::uint64_t away = game.proof.count(NotInForeground);
    return away == 0 ? ""
                     : " In " + counted(away, "tick") + " another window was in the foreground; these do not count.";
}

std::string parameter(const Session& session, const char* flag, const char* byDefault) {
    const auto found = session.parameters.find(flag);
    return found == session.parameters.end()
               ? std::string(byDefault) + " (the default: the log does not tell " + flag + ")"
               : found->second;
}

Explanation explainWarming(const Session& session, const Game& game) {
    return {std::string("The game ") + (game.proof.has(ProcessClosed) ? "ended" : "was reported as ended") +
                " while it still warmed up: a game is measured only after it was in the foreground for the seconds of "
                "-nw, " +
                parameter(session, "-nw", "120") + "." + awayOf(game),
            "Play longer, in the foreground.", proof(game, {NotNative, NoOptimalResolution, TooFewSamples})};
}

Explanation explainSamples(const Session& session, const Game& game) {
    std::string verdict =
        "Too few samples of the frame rate: " + std::to_string(game.intervals.value_or(game.acceptedSamples)) + " of " +
        parameter(session, "-nv", "120") + ".";
    if (game.rejectedSamples > 0) {
        verdict += " " + counted(game.rejectedSamples, "sample") +
                   (game.rejectedSamples == 1 ? " lies outside of 15 to 300 and is left out."
                                              : " lie outside of 15 to 300 and are left out.");
    }
    verdict += awayOf(game);
    const bool isRejected = game.rejectedSamples > game.acceptedSamples;
    return {verdict,
            isRejected ? "Look at the \"FPS = \" lines: the vendor's library gives no frame rate for this game, or it "
                         "runs outside of what counts."
                       : "Play longer, in the foreground: samples are taken only in the measuring periods.",
            proof(game, {TooFewSamples})};
}

Explanation explainNotNative(const Game& game) {
    const bool isUnknown = game.nativeResolution == "0x0";
    return {isUnknown
                ? std::string("The vendor's library could not tell the display's native resolution, so no game is "
                              "judged.")
                : "The desktop does not run at the display's native resolution, which is " + game.nativeResolution +
                      "; then no game is judged.",
            isUnknown ? "The line above \"native resolution\" says why; a desktop that spans displays has none."
                      : "Set the desktop to its native resolution and play again.",
            proof(game, {LibraryDisplayFailed, NativeResolution, NotNative})};
}

Explanation explainNoLower(const Game& game) {
    return {"The display has no lower resolution of the same shape to offer" +
                (game.nativeResolution.empty() ? std::string() : " (native: " + game.nativeResolution + ")") + ".",
            "Look at the display's modes in Windows; after an update of the graphics driver there may be more.",
            proof(game, {LibraryDisplayFailed, NativeResolution, NoLowerResolution, NoOptimalResolution})};
}

std::string format(double number) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", number);
    return text;
}

Explanation explainFast(const Session& session, const Game& game) {
    const auto rate = refreshRateOf(game);
    std::string verdict = "The game runs fast enough: its average of " + std::to_string(game.averageFps.value_or(0)) +
                          " is " + format(game.ratio.value_or(0)) + " of the refresh rate" +
                          (rate ? " of " + std::to_string(*rate) + " Hz" : "") + "; an offer needs less than 0.85.";
    std::string next = "Nothing is wrong.";
    if (session.source == FrameRateSource::RefreshRate) {
        verdict += " But nothing was measured: without the vendor's library every game counts as running at the "
                   "refresh rate.";
        next = "On this machine no game gets an offer. Look why the vendor's library did not start, or try with -fps.";
    } else if (session.source == FrameRateSource::Parameter) {
        verdict += " The frame rate is the one of -fps.";
    }
    if (game.ratio && !rate) {
        next = "The display's refresh rate is not known: the lines before the ratio may say why.";
    }
    return {verdict, next, proof(game, {NativeResolution, Ratio})};
}

} // namespace

Explanation explainMeasuring(const Session& session, const Game& game) {
    switch (findReason(game)) {
    case Reason::EndedWhileWarming:
        return explainWarming(session, game);
    case Reason::TooFewSamples:
        return explainSamples(session, game);
    case Reason::NotNativeResolution:
        return explainNotNative(game);
    case Reason::NoLowerResolution:
        return explainNoLower(game);
    default:
        return explainFast(session, game);
    }
}

} // namespace brisk::logbook
