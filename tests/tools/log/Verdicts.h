// What brisklog makes of the logs of the folder `logs`, in short. The service wrote them: ServiceLogsTest holds that it
// still does.
#pragma once

#include "tools/log/LogReader.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace brisk::testing {

// Writes down each game and each session: "game 1001 StarlitHarbour.exe no-offer other-process", "pass failed
// a.exe=failed b.exe=patched", "session normal refresh-rate".
class VerdictList : public logbook::VerdictSink {
public:
    void onGame(const logbook::Session& /*session*/, const logbook::Game& game) override {
        std::string line = "game " + (game.id ? std::to_string(*game.id) : "?") + " " +
                           (game.binaryName.empty() ? "?" : game.binaryName) +
                           (logbook::isOffered(game) ? " offer " : " no-offer ") +
                           logbook::codeOf(logbook::findReason(game));
        if (logbook::isOffered(game)) {
            line += std::string(" ") + logbook::codeOf(game.answer) +
                    (game.isPatched ? (*game.isPatched ? " patched" : " not-patched") : "") +
                    (game.proof.has(logbook::LineKind::ToastRefused) ? " not-shown" : "");
        }
        lines.push_back(line);
    }
    void onSession(const logbook::Session& session) override {
        for (const logbook::Pass& pass : session.passes) {
            std::string line = std::string("pass ") + logbook::outcomeOf(pass);
            for (const logbook::PassTitle& title : pass.titles) {
                line += " " + title.binaryName + "=" + logbook::codeOf(title.outcome);
            }
            lines.push_back(line);
        }
        lines.push_back(std::string("session ") + logbook::codeOf(session.end) + " " + logbook::codeOf(session.source));
        unknownLines += session.unknownCount;
    }

    std::vector<std::string> lines;
    std::uint64_t unknownLines = 0;
};

inline std::vector<std::string> verdictsOf(std::string_view log) {
    VerdictList list;
    logbook::LogReader reader(list);
    reader.feed(log);
    reader.finish();
    return list.lines;
}

// By the log's name.
inline const std::map<std::string, std::vector<std::string>>& expectedVerdicts() {
    static const std::string kGame = "game 1001 StarlitHarbour.exe ";
    static const std::string kUnseen = "game 1001 ? ";
    static const std::string kEnd = "session normal refresh-rate";
    // The judgement tells that 40 is not the display's own rate.
    static const std::string kFixedEnd = "session normal fps-parameter";
    static const std::string kLibraryEnd = "session normal vendor-library";
    static const std::map<std::string, std::vector<std::string>> verdicts{
        {"offer-configured", {kGame + "offer offer configure patched", kFixedEnd}},
        {"offer-unanswered", {kGame + "offer offer none", kFixedEnd}},
        {"offer-not-now", {kGame + "offer offer not-now", kFixedEnd}},
        {"offer-file-held-open", {kGame + "offer offer configure not-patched", kFixedEnd}},
        {"offer-title-error", {kGame + "offer offer configure", kFixedEnd}},
        {"offer-toast-refused", {kGame + "offer offer none not-shown", kFixedEnd}},
        {"offers-off",
         {kGame + "offer offer dont-ask-again", kGame + "no-offer offers-off", kGame + "offer offer none", kFixedEnd}},
        {"refused-three-times",
         {kGame + "offer offer not-now", kGame + "offer offer not-now", kGame + "offer offer not-now",
          kGame + "no-offer refused-three-times", kFixedEnd}},
        {"unknown-id", {"game 1002 ? no-offer unknown-id", kEnd}},
        {"unknown-id-beside-an-offer",
         {kGame + "offer offer configure patched", "game 1002 ? no-offer unknown-id", kFixedEnd}},
        {"never-looked-for", {kUnseen + "no-offer never-in-foreground", kEnd}},
        {"never-in-foreground", {kUnseen + "no-offer never-in-foreground", kEnd}},
        {"other-process", {kUnseen + "no-offer other-process", kEnd}},
        {"other-publisher", {kGame + "no-offer not-supported", kEnd}},
        {"other-binary-name", {"game 1001 Harbour.exe no-offer not-supported", kEnd}},
        {"no-configuration", {kGame + "no-offer not-supported", kEnd}},
        {"no-registry-configuration", {kGame + "no-offer not-supported", kEnd}},
        {"configuration-gone", {kGame + "no-offer not-supported", kFixedEnd}},
        {"process-not-opened", {kUnseen + "no-offer process-not-opened", kEnd}},
        {"ended-while-warming", {kGame + "no-offer ended-while-warming", kEnd}},
        {"died-while-warming", {kGame + "no-offer ended-while-warming", kEnd}},
        {"too-few-samples", {kGame + "no-offer too-few-samples", kEnd}},
        {"rejected-samples", {kGame + "no-offer too-few-samples", kLibraryEnd}},
        {"not-native-resolution", {kGame + "no-offer not-native-resolution", kLibraryEnd}},
        {"spanned-desktop", {kGame + "no-offer not-native-resolution", kLibraryEnd}},
        {"no-lower-resolution", {kGame + "no-offer no-lower-resolution", kEnd}},
        {"fast-enough", {kGame + "no-offer fast-enough", kEnd}},
        {"measured-fast-enough", {kGame + "no-offer fast-enough", kLibraryEnd}},
        {"already-as-wanted", {kGame + "no-offer already-as-wanted", kFixedEnd}},
        {"condition", {kGame + "no-offer condition", kFixedEnd}},
        {"condition-missing", {kGame + "no-offer condition", kFixedEnd}},
        {"second-game", {kGame + "no-offer second-game", kUnseen + "no-offer second-game", kEnd}},
        {"quit-while-tracking", {kGame + "no-offer cut-off", kEnd}},
        {"killed-while-tracking", {kGame + "no-offer cut-off", "session cut-off refresh-rate"}},
        {"error-while-judging", {kGame + "no-offer cut-off", "session error fps-parameter"}},
        {"bulk-pass",
         {"pass failed StarlitHarbour.exe=patched a.exe=failed b.exe=not-found c.exe=nothing-to-do", kEnd}},
        {"bulk-pass-error", {"pass cut-off StarlitHarbour.exe=cut-off", "session error refresh-rate"}},
        {"running-already", {kEnd, "session running-already unknown"}},
        {"no-database", {"session no-titles refresh-rate"}},
        {"database-no-array", {"session no-titles refresh-rate"}},
        {"database-empty", {"session no-titles refresh-rate"}},
        {"malformed-database", {"session malformed-database unknown"}},
        {"location-no-text", {"session malformed-database unknown"}},
        {"no-registry", {"session no-registry refresh-rate"}},
    };
    return verdicts;
}

} // namespace brisk::testing
