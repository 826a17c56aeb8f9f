#include "tools/log/Explanation.h"

#include "tools/log/GameWords.h"
#include "tools/log/LineValues.h"

namespace brisk::logbook {

namespace {

using enum LineKind;

const std::vector<LineKind> kStart{Started,         RunningAlready,  ModuleFailed,       DatabaseNotOpened,
                                   DatabaseNoArray, UnknownAdapter,  RegistryNotGranted, LibraryFailed,
                                   LibraryAcquired, GenericGraphics, NoGraphics,         Error,
                                   ParameterSet};

Explanation explainNoTitles(const Session& session) {
    Explanation words{"The service ended at once, for it has no titles: ", "", {}};
    if (session.proof.has(DatabaseNotOpened)) {
        words.verdict += "there is no titles_db.json in the folder of brisk.exe, or it cannot be read.";
        words.next = "Put titles_db.json beside brisk.exe, and look who may read it.";
    } else if (session.proof.has(DatabaseNoArray)) {
        words.verdict += "titles_db.json is no array.";
        words.next = "Run `brisktitles check titles_db.json`: a database is an array of titles, [...].";
    } else {
        words.verdict += "titles_db.json holds none. It is [], or no member has a known \"config_type\".";
        words.next = "Run `brisktitles check titles_db.json`.";
    }
    return words;
}

Explanation explainMalformed(const Session& session) {
    const auto line = readNumberBehind(session.error, "at line ");
    const auto column = readNumberBehind(session.error, ", column ");
    if (session.error.find("parse_error") == std::string::npos) {
        return {"titles_db.json holds a value of the wrong type, a location that is no string: " + session.error,
                "Run `brisktitles check titles_db.json`: it names the place.",
                {}};
    }
    return {"titles_db.json is malformed" +
                (line && column ? ": reading failed in line " + std::to_string(*line) + ", column " +
                                      std::to_string(*column) + "; the fault may be on the line before"
                                : std::string()) +
                ". The service's words: " + session.error,
            "Run `brisktitles check titles_db.json`: it names the fault where it is made.",
            {}};
}

Explanation explainError(const Session& session) {
    const std::string last =
        session.lastBinaryName.empty() ? std::string() : "; the last one named is " + session.lastBinaryName;
    const std::string order = "Titles are gone through in the order of their binary names" + last + ".";
    const std::string& error = session.error;
    const auto has = [&error](const char* words) { return error.find(words) != std::string::npos; };
    const std::string ended = "The service ended by an error: ";
    if (has("invalid stoi argument")) {
        return {ended + "a title's number field has no digits where the game's configuration has its value. " + order,
                "Look at the keys of that title's number fields: the second group has to catch digits alone. "
                "`brisktitles check` finds such keys.",
                {}};
    }
    if (has("stoi argument out of range")) {
        return {ended + "a number in a game's configuration is too large for a title's number field. " + order,
                "Make that field a text field, or its key catch fewer digits.",
                {}};
    }
    if (has("regular expression") || has("regex")) {
        return {ended + "a title's key is no regular expression, or its search was given up (" + error + "). " + order,
                "Run `brisktitles check titles_db.json`: it names the key.",
                {}};
    }
    if (has("ToastManager: Error")) {
        return {ended + "Windows has no notifications, or refused the service's identity or shortcut (" + error + ").",
                "Look whether this Windows has notifications, and whether the user's Start menu can be written.",
                {}};
    }
    if (has("RegisterClass failed") || has("CreateWindowEx failed")) {
        return {ended + "its window could not be made (" + error + ").",
                "Start it in a user's session with a desktop, and not from another service.",
                {}};
    }
    if (has("filesystem error") || has("status") || has("exists") || has("directory_iterator")) {
        return {ended + "a folder or file of a title could not be looked at (" + error + "). " + order,
                "Look who may read the place that the title names.",
                {}};
    }
    return {ended + error, "This error is not expected. Keep the log and the database, and report it.", {}};
}

Explanation explainCut(const Session& session) {
    if (session.parameters.contains("-log")) {
        return {"From here on the service's lines are in the file of -log: " + session.parameters.at("-log"),
                "Read that file.",
                {}};
    }
    return {"The log ends here and has no end of the service: it was ended by force, still runs, or the log is cut.",
            "If the service is not running, look at what ended it: logging off, an update, a crash.",
            {}};
}

Explanation explainEnd(const Session& session) {
    switch (session.end) {
    case SessionEnd::Normal:
        return {"The service ended normally.", "", {}};
    case SessionEnd::RunningAlready:
        return {"The service was running already, so this one ended at once.",
                "Nothing is wrong, if the first one has the host's messages. `briskhost status` tells which one runs.",
                {}};
    case SessionEnd::NoTitles:
        return explainNoTitles(session);
    case SessionEnd::MalformedDatabase:
        return explainMalformed(session);
    case SessionEnd::NoRegistry:
        return {"The service ended at once, for it may not write its key of the registry.",
                "Look who may write HKEY_CURRENT_USER\\SOFTWARE\\Orlan\\briskGCT: the user has to have every right.",
                {}};
    case SessionEnd::NoGraphics:
        return {"The service ended at once, for no display reports a mode.",
                "Start it in a session with a display; a remote session may have none.",
                {}};
    case SessionEnd::BadNumber:
        return {"The service ended before its start, for a number on its command line is too large (" + session.error +
                    "); the last parameter that was set is the one.",
                "Correct the command line with which the host starts the service.",
                {}};
    case SessionEnd::Error:
        return explainError(session);
    case SessionEnd::CutOff:
        break;
    }
    return explainCut(session);
}

} // namespace

Explanation explain(const Session& session) {
    Explanation words = explainEnd(session);
    std::vector<LineKind> kinds = kStart;
    kinds.push_back(Finished);
    words.lines = session.proof.select(kinds);
    if (session.end == SessionEnd::Error && !session.proof.has(Error)) {
        words.lines.push_back({session.lastLine, "Brisk : " + session.error, 1, session.lastLine, session.endTime});
    }
    return words;
}

std::string explainSource(const Session& session) {
    switch (session.source) {
    case FrameRateSource::Library:
        return "Frame rates are measured by the vendor's library.";
    case FrameRateSource::RefreshRate:
        return "Frame rates are not measured: without the vendor's library the display's refresh rate stands for them.";
    case FrameRateSource::Parameter:
        return "Frame rates are not measured: -fps gives them (or the display's refresh rate was another one at the "
               "start).";
    case FrameRateSource::Unknown:
        break;
    }
    return "The log does not tell where frame rates come from.";
}

} // namespace brisk::logbook
