// What happens to the service and around it, one thing a step. A step's meaning depends on the state it meets, so any
// part of a sequence is a sequence again: that is how a failing one is made short.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace brisk::model {

enum class StepKind {
    Tick,       // if the timer runs
    LateTick,   // whether it runs or not, and timers of other ids
    AppStarted, // a: the slot of the game
    AppFinished,
    LongGame, // as if it had been measured for hours
    Bulk,
    Reset,
    Quit,
    EndSession, // a: wParam
    TitleInfo,
    OtherMessage,
    Launch,     // a: slot, b: title
    EndProcess, // a: slot
    Foreground, // a: slot
    Company,    // a: title
    Press,      // a: which toast, b: which button
    ToastEvent, // a: which toast
    Install,    // a: title; its configuration is where it should be
    WriteFile,  // a: title
    RemoveFile,
    LockFile,
    SaveFolders, // a: title; the folders that a wildcard meets
    WriteValue,  // a: title
    RemoveKey,
    UserState,
    Display,
    Fps,
    BreakCall, // a: which
    MendCalls,
    BreakFiles,
    BreakToasts,
    Count
};

struct Step {
    StepKind kind = StepKind::Tick;
    std::uint64_t a = 0;
    std::uint64_t b = 0;
};

std::vector<Step> makeSteps(std::uint64_t seed, std::size_t count);
std::string describe(const Step& step);

} // namespace brisk::model
