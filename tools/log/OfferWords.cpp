#include "tools/log/GameWords.h"

#include "tools/log/LineValues.h"

namespace brisk::logbook {

namespace {

using enum LineKind;

const std::vector<LineKind> kJudgement{AppStarted, Publisher,        AppFinished,      Average,       Ratio,
                                       NotOptimal, ShouldShowToast,  Needed,           OffersAllowed, Refusals,
                                       NotLoaded,  ConditionForbids, ConditionMissing, ToastRefused};

const char* const kLookAtRegistry =
    "Look who may write HKEY_CURRENT_USER\\SOFTWARE\\Orlan\\briskGCT: the answer is lost, and the next game gets an "
    "offer again.";

std::vector<ProvingLine> proof(const Game& game, std::vector<LineKind> more = {}) {
    more.insert(more.begin(), kJudgement.begin(), kJudgement.end());
    return game.proof.select(more);
}

void explainPatch(const Game& game, Explanation& offer) {
    offer.verdict += " The player pressed \"Configure Settings\"";
    if (!game.isPatched) {
        offer.verdict +=
            ", and no line tells what came of it: the title holds an error, such as a number without digits "
            "or a search that was given up, and the file was not touched. (Or the log ends too early.)";
        offer.next = "Try the title's keys on the game's file: `brisktitles check` finds most faults.";
    } else if (*game.isPatched) {
        offer.verdict += ", and the settings were written.";
        offer.next = "Nothing is wrong. If the game looks as before, look whether it writes its settings back.";
        if (game.proof.has(MarkerFailed)) {
            offer.verdict += " The marker in the registry was not.";
        }
    } else {
        offer.verdict += ", but the settings could not be written; a toast said so.";
        offer.next = "Look whether the game still ran or something else held the file open, and who may write it.";
    }
}

} // namespace

Explanation explainOffer(const Game& game) {
    Explanation offer{"An offer was made.", "Nothing is wrong.",
                      proof(game, {PressConfigure, PressNotNow, PressDontAskAgain, SettingNotWritten, Optimized,
                                   PatchFailed, MarkerSet, MarkerFailed, RefusalCounted, RefusalNotCounted,
                                   OffersDisabled, OffersNotDisabled, RegistryFailed})};
    if (game.proof.has(ToastRefused)) {
        return {
            "An offer was due, but Windows refused to show it.",
            "Look whether the title's name or a setting's text in titles_db.json holds '&' or '<', and whether Windows "
            "shows notifications at all.",
            std::move(offer.lines)};
    }
    switch (game.answer) {
    case Answer::None:
        offer.verdict += " The log tells no answer to it.";
        offer.next =
            "If the player did not see it, look at focus assist and at Windows' notification settings: an offer "
            "that Windows accepts and does not show leaves no line.";
        break;
    case Answer::Configure:
        explainPatch(game, offer);
        break;
    case Answer::NotNow:
        if (game.proof.has(RefusalNotCounted)) {
            offer.verdict += " The player answered \"Not Now\", which could not be counted.";
            offer.next = kLookAtRegistry;
        } else {
            offer.verdict +=
                " The player answered \"Not Now\" (" + std::to_string(game.refusals.value_or(0) + 1) + " of 3).";
            offer.next = "Nothing is wrong. After three such answers the game gets no offer any more.";
        }
        break;
    case Answer::DontAskAgain:
        if (game.proof.has(OffersNotDisabled)) {
            offer.verdict += " The player answered \"Don't ask again\", which could not be kept.";
            offer.next = kLookAtRegistry;
        } else {
            offer.verdict += " The player answered \"Don't ask again\".";
            offer.next = "No game gets an offer any more until the host resets the answers (`briskhost reset`).";
        }
        break;
    }
    return offer;
}

Explanation explainSettings(const Game& game) {
    switch (findReason(game)) {
    case Reason::Condition: {
        const bool isMissing = !game.proof.has(ConditionForbids);
        const auto& line = game.proof.of(isMissing ? ConditionMissing : ConditionForbids).front().text;
        const std::string key(before(before(behindLast(line, "with key '"), "' and value '"), "'. Skip patching."));
        const std::string value(before(behindLast(line, "' and value '"), "' doesn't meet requirements."));
        return {"A condition of the title forbids the adjustment: the setting '" +
                    (isMissing ? key + "' is missing in the game's configuration."
                               : std::string(before(behindLast(before(line, "' and value '"), "with key '"), "' and")) +
                                     "' is '" + value + "'."),
                "Look at \"patch_if\" of the title. The player can change this setting in the game.", proof(game)};
    }
    case Reason::OffersOff:
        return {"The player has switched offers off for all games with \"Don't ask again\".",
                "The host can reset the answers (`briskhost reset`), if the player wants offers again.", proof(game)};
    case Reason::RefusedThreeTimes:
        return {"The player has put this game's offer off " + std::to_string(game.refusals.value_or(0)) +
                    " times; three are the limit.",
                "The host can reset the answers (`briskhost reset`), if the player wants offers again.", proof(game)};
    default:
        return {"The game runs too slowly, but its settings are already what the title wants.",
                "Nothing is left to adjust. If other settings would help, the title has to name them.", proof(game)};
    }
}

} // namespace brisk::logbook
