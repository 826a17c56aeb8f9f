#include "tools/log/GameWords.h"

#include "tools/log/LineValues.h"

namespace brisk::logbook {

namespace {

using enum LineKind;

// Windows' errors.
constexpr std::uint64_t kKeyNotThere = 2;
constexpr std::uint64_t kAccessDenied = 5;

// "12 ticks", "3 of 12 ticks": those that came to something, of all in which the game was looked for.
std::string ticksOf(const Game& game, TickOutcome outcome) {
    const std::uint64_t all = game.allTicks();
    const std::uint64_t some = game.ticksOf(outcome);
    return (some == all ? "" : std::to_string(some) + " of ") + counted(all, "tick");
}

std::string andMore(std::size_t omitted) {
    return omitted == 0 ? "" : " and " + std::to_string(omitted) + " more";
}

Explanation explainUnknownId(const Game& game) {
    return {
        "No title of the service's database has the id " + (game.id ? std::to_string(*game.id) : "announced") +
            ", so the game was not followed at all.",
        "Compare the id that the host announces with the \"id\" members of titles_db.json (--database does it), and "
        "look whether the service reads the database that you mean: it lies beside brisk.exe.",
        game.proof.select({AppStarted, UnknownId})};
}

Explanation explainNoForeground(const Game& game) {
    if (game.allTicks() == 0) {
        return {"The game ended before the service looked for it even once: it looks once a second.",
                "Let the host announce the game when its window opens, and its end when the game has ended.",
                game.proof.select({AppStarted, Waiting, AppFinished, NotNative, NoOptimalResolution, TooFewSamples})};
    }
    return {"In " + ticksOf(game, TickOutcome::NoWindow) +
                " the service found no window in the foreground at all, so the game never was there.",
            "Look whether the game opened a window on the desktop of the service's user, and whether the screen was "
            "locked.",
            game.proof.select(
                {AppStarted, Window, OtherProcess, AppFinished, NotNative, NoOptimalResolution, TooFewSamples})};
}

Explanation explainOtherProcess(const Game& game) {
    std::string others;
    for (const ProvingLine& line : game.proof.of(OtherProcess)) {
        const auto other = behindLast(line.text, "instead of PID ");
        others += (others.empty() ? "" : ", ") + std::string(other) +
                  (line.times > 1 ? " (" + counted(line.times, "time") + ")" : "");
    }
    return {"Another process was in the foreground in " + ticksOf(game, TickOutcome::OtherProcess) +
                ": the announced one is " +
                std::string(behindLast(before(game.proof.of(OtherProcess).front().text, " instead of"), "PID ")) +
                ", and the service found " + others + andMore(game.proof.omitted(OtherProcess)) + ".",
            "If the announced process is a launcher, the host has to announce the game's own process, once that runs. "
            "Otherwise look which program covers the game.",
            game.proof.select(
                {AppStarted, OtherProcess, Window, AppFinished, NotNative, NoOptimalResolution, TooFewSamples})};
}

std::string pathsOf(const Game& game) {
    std::string paths;
    for (const LineKind kind : {CheckingPath, CheckingRegistry}) {
        for (const ProvingLine& line : game.proof.of(kind)) {
            const auto quoted = before(behindLast(line.text, "path '"), "'.");
            paths += (paths.empty() ? "" : ", ") + ("'" + std::string(quoted) + "'");
        }
    }
    return paths + andMore(game.proof.omitted(CheckingPath) + game.proof.omitted(CheckingRegistry));
}

// The error with which a key could not be opened that is there; nothing where keys were not there.
std::string refusalOf(const Game& game) {
    for (const ProvingLine& line : game.proof.of(RegistryOpenFailed)) {
        const auto error = readNumberBehind(line.text, "Error ");
        if (error && *error != kKeyNotThere) {
            return "error " + std::to_string(*error) + (*error == kAccessDenied ? ", access is denied" : "");
        }
    }
    return {};
}

Explanation explainNotSupported(const Game& game) {
    const std::vector<LineKind> kinds{AppStarted,       NoFileProperties, Publisher,     CheckingPath,
                                      CheckingRegistry, ConfigNotFound,   ConfigSkipped, RegistryOpenFailed,
                                      NotLoaded,        Needed,           AppFinished};
    const std::string found = (game.ticksOf(TickOutcome::NotSupported) == game.allTicks()
                                   ? std::string()
                                   : "In " + ticksOf(game, TickOutcome::NotSupported) + ": ") +
                              "The executable is '" + game.binaryName + "' of '" + game.publisher + "'.";
    if (game.proof.has(NotLoaded)) {
        return {"The game's configuration was there when the game began and could not be read at its end (looked at: " +
                    pathsOf(game) + ").",
                "Look whether the game deletes or moves its settings when it ends, and who may read them.",
                game.proof.select(kinds)};
    }
    if (const std::string paths = pathsOf(game); !paths.empty()) {
        if (const std::string refusal = refusalOf(game); !refusal.empty()) {
            return {found + " The title fits, but Windows did not open a key of its configuration (" + refusal +
                        "). Looked at: " + paths + ".",
                    "Look who may read and write that key of the registry: the service opens it as its user.",
                    game.proof.select(kinds)};
        }
        return {found + " The title fits, but its configuration is not on this machine. Looked at: " + paths + ".",
                "Look where the game keeps its settings on this machine, and start it once so that it writes them. If "
                "they lie elsewhere, \"config_locations\" of the title has to name the place.",
                game.proof.select(kinds)};
    }
    return {found + " No title fits: there is none of this binary name, or its publisher is another one; a title whose "
                    "location has a '*' fits in vain, too, when the folder in front of the star is not there.",
            "Compare both texts, letter for letter, with \"binary_name\" and \"publisher\" in titles_db.json "
            "(--database does it).",
            game.proof.select(kinds)};
}

Explanation explainNotOpened(const Game& game) {
    return {"Windows did not let the service look into the game's process, in " +
                ticksOf(game, TickOutcome::NotOpened) + ".",
            "Look whether the game runs as administrator, or whether its protection against cheating keeps other "
            "programs out. The service needs no rights that its user does not have; such a game gets no offer.",
            game.proof.select({AppStarted, NoFileName, ConfigSkipped, OpenProcessFailed, Publisher, AppFinished})};
}

} // namespace

Explanation explainWaiting(const Session& /*session*/, const Game& game) {
    switch (findReason(game)) {
    case Reason::UnknownId:
        return explainUnknownId(game);
    case Reason::NeverInForeground:
        return explainNoForeground(game);
    case Reason::OtherProcess:
        return explainOtherProcess(game);
    case Reason::NotSupported:
        return explainNotSupported(game);
    default:
        return explainNotOpened(game);
    }
}

} // namespace brisk::logbook
