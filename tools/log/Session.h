#pragma once

#include "tools/log/Proof.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace brisk::logbook {

enum class SessionEnd {
    Normal,
    RunningAlready,
    NoTitles,
    MalformedDatabase,
    NoRegistry,
    NoGraphics,
    BadNumber,
    Error,
    CutOff
};

// "normal", "running-already", ...
const char* codeOf(SessionEnd end);

enum class FrameRateSource { Unknown, Library, RefreshRate, Parameter };

// "unknown", "vendor-library", "refresh-rate", "fps-parameter".
const char* codeOf(FrameRateSource source);

enum class TitleOutcome { Patched, NothingToDo, Condition, NotLoaded, Failed, NotFound, CutOff };

// "patched", "nothing-to-do", "condition", "not-loaded", "failed", "not-found", "cut-off".
const char* codeOf(TitleOutcome outcome);

// A title of a pass over all games.
struct PassTitle {
    std::string binaryName;
    std::string titleName; // only of a patched one
    TitleOutcome outcome = TitleOutcome::CutOff;
    std::vector<ProvingLine> lines;
};

// A pass over all games.
struct Pass {
    std::uint64_t firstLine = 0;
    std::uint64_t lastLine = 0;
    bool hasNoLowerResolution = false; // and so nothing was tried
    bool isToastRefused = false;
    bool isReadMore = false;                      // the player pressed it
    bool isCutOff = false;                        // nothing tells that it went to its end
    std::vector<PassTitle> titles;                // the first ones of the session's passes
    std::map<TitleOutcome, std::uint64_t> counts; // of all titles
    std::uint64_t omittedTitles = 0;
    std::vector<ProvingLine> lines; // of the pass as a whole
};

// "patched", "nothing-to-do", "no-lower-resolution", "failed", "cut-off".
const char* outcomeOf(const Pass& pass);
// "2 patched, 1 not-found": all its titles.
std::string countsOf(const Pass& pass);

// One run of the service. The games go their own way (VerdictSink.h).
struct Session {
    std::uint64_t number = 0; // from 1
    std::uint64_t firstLine = 0;
    std::uint64_t lastLine = 0;
    std::string beginTime; // as a capture gives them; may be empty
    std::string endTime;
    std::optional<std::uint32_t> processId;
    std::string version; // empty when the log does not have the start

    std::vector<std::pair<std::string, std::string>> head; // of a recording
    std::map<std::string, std::string> parameters;         // "-nw", ... "-log", where the log tells them
    FrameRateSource source = FrameRateSource::Unknown;
    std::string lastBinaryName; // that a line named

    SessionEnd end = SessionEnd::CutOff;
    std::string error; // the exception's text
    Proof proof;

    std::vector<Pass> passes;
    std::uint64_t omittedPasses = 0;
    std::uint64_t games = 0;
    std::uint64_t offers = 0;
    std::vector<ProvingLine> unknownLines; // the first ones
    std::uint64_t unknownCount = 0;
    std::vector<ProvingLine> loosePresses; // of offers that the log does not have
};

} // namespace brisk::logbook
