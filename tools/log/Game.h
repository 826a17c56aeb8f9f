#pragma once

#include "tools/log/Proof.h"
#include "tools/log/Timeline.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace brisk::logbook {

// Why a game got an offer, or none. The order is no precedence: findReason tells which of several goes first.
enum class Reason {
    Offer,
    UnknownId,
    NeverInForeground,
    OtherProcess,
    NotSupported,
    ProcessNotOpened,
    EndedWhileWarming,
    TooFewSamples,
    NotNativeResolution,
    NoLowerResolution,
    FastEnough,
    AlreadyAsWanted,
    Condition,
    OffersOff,
    RefusedThreeTimes,
    SecondGame,
    CutOff
};

// "offer", "unknown-id", ...
const char* codeOf(Reason reason);

// What a tick of the service's timer came to while a game was looked for.
enum class TickOutcome { NoWindow, OtherProcess, NotSupported, NotOpened };

enum class Answer { None, Configure, NotNow, DontAskAgain };

// "none", "configure", "not-now", "dont-ask-again".
const char* codeOf(Answer answer);

// What the log tells of one game, from the host's message about its start on. Its size has a limit, however long it was
// played.
struct Game {
    std::optional<std::uint32_t> id;        // nothing: announced before the log begins
    std::optional<std::uint32_t> processId; // of the announcement
    std::string binaryName;                 // empty until it was in the foreground
    std::string publisher;                  // as found in its executable
    std::uint64_t firstLine = 0;
    std::uint64_t lastLine = 0;
    std::string beginTime; // as a capture gives them; may be empty
    std::string endTime;

    bool isAccepted = false;              // its id is known
    bool isWarmed = false;                // it was found, and its warming up began
    bool isTracked = false;               // measuring began
    bool isFinished = false;              // the host told its end
    bool isSecond = false;                // announced while another was tracked
    bool hadSecond = false;               // another was announced while this one was tracked
    std::array<std::uint64_t, 4> ticks{}; // by what they came to
    std::uint64_t ticksOf(TickOutcome outcome) const { return ticks[static_cast<std::size_t>(outcome)]; }
    std::uint64_t allTicks() const;

    std::uint64_t acceptedSamples = 0; // 15 to 300
    std::uint64_t rejectedSamples = 0;
    std::optional<std::uint64_t> averageFps;
    std::optional<std::uint64_t> intervals; // samples that count, as the service says
    std::optional<double> ratio;            // of the average to the refresh rate
    std::string nativeResolution;           // "1920x1080"
    std::string lowerResolution;
    std::optional<bool> isNeeded;
    std::optional<bool> isAllowed;
    std::optional<std::uint64_t> refusals;

    Answer answer = Answer::None;
    std::optional<bool> isPatched; // after Configure Settings; nothing when no line tells
    Proof proof;
    Timeline timeline;
};

// Goes first what ended tracking, then what kept the game from being followed, then how its end was judged.
Reason findReason(const Game& game);

// What else kept the game from an offer, or would have.
std::vector<Reason> findFurtherReasons(const Game& game);

bool isOffered(const Game& game);

// The refresh rate behind the ratio, in Hz; nothing where no ratio was logged or it tells none.
std::optional<std::uint64_t> refreshRateOf(const Game& game);

inline constexpr double kRatioLimit = 0.85;
inline constexpr std::uint64_t kMaximumRefusals = 3;
inline constexpr double kLowestFps = 15;
inline constexpr double kHighestFps = 300;

} // namespace brisk::logbook
