#include "host/model/Steps.h"

#include "host/model/Random.h"

#include <iterator>

namespace brisk::model {

namespace {

constexpr const char* kNames[] = {
    "Tick",       "LateTick",  "AppStarted",   "AppFinished", "LongGame",   "Bulk",        "Reset",      "Quit",
    "EndSession", "TitleInfo", "OtherMessage", "Launch",      "EndProcess", "Foreground",  "Company",    "Press",
    "ToastEvent", "Install",   "WriteFile",    "RemoveFile",  "LockFile",   "SaveFolders", "WriteValue", "RemoveKey",
    "UserState",  "Display",   "Fps",          "BreakCall",   "MendCalls",  "BreakFiles",  "BreakToasts"};

static_assert(std::size(kNames) == static_cast<std::size_t>(StepKind::Count));

class Generator {
public:
    Generator(std::uint64_t seed, std::size_t stepCount) : random(seed), count(stepCount) {}

    std::vector<Step> make() {
        while (steps.size() < count) {
            if (random.oneIn(3)) {
                game();
            } else {
                anything();
            }
        }
        steps.resize(count);
        return std::move(steps);
    }

private:
    void add(StepKind kind, std::uint64_t a, std::uint64_t b) { steps.push_back({kind, a, b}); }
    void add(StepKind kind) { add(kind, random.next(), random.next()); }
    void add(StepKind kind, std::uint64_t a) { add(kind, a, random.next()); }

    // Rare things are rare, so that games are often played to their end.
    void anything() {
        const StepKind kind = static_cast<StepKind>(random.below(static_cast<unsigned>(StepKind::Count)));
        switch (kind) {
        case StepKind::Quit:
            if (random.oneIn(8)) {
                restart();
            }
            break;
        case StepKind::EndSession:
            add(kind, 0);
            if (random.oneIn(8)) {
                endSession();
            }
            break;
        case StepKind::Reset:
        case StepKind::BreakFiles:
        case StepKind::BreakToasts:
            if (random.oneIn(3)) {
                add(kind);
            }
            break;
        default:
            add(kind);
            break;
        }
    }

    // Start-up on a machine where something may not work.
    void restart() {
        add(random.pick({StepKind::BreakCall, StepKind::BreakCall, StepKind::BreakFiles, StepKind::Display}));
        add(StepKind::Quit);
        add(StepKind::MendCalls);
    }

    // The machine goes down, but the service is still there for a while.
    void endSession() {
        add(StepKind::EndSession, 1 + random.below(3));
        for (unsigned left = random.below(6); left > 0; --left) {
            add(random.pick({StepKind::Press, StepKind::Bulk, StepKind::AppFinished, StepKind::Tick}));
            add(StepKind::Press);
        }
        add(StepKind::Quit);
    }

    void game() {
        const std::uint64_t slot = random.below(4);
        const std::uint64_t title = random.below(5);
        add(StepKind::Launch, slot, title + 8 * random.below(1u << 16));
        if (!random.oneIn(4)) {
            add(StepKind::Install, title);
        }
        if (random.oneIn(4)) {
            add(StepKind::Display);
        }
        if (!random.oneIn(4)) {
            add(StepKind::MendCalls);
        }
        add(StepKind::Fps);
        add(StepKind::Foreground, slot);
        add(StepKind::AppStarted, slot);
        for (unsigned ticks = random.below(48); ticks > 0; --ticks) {
            add(StepKind::Tick);
            if (random.oneIn(8)) {
                add(StepKind::Fps);
            }
            if (random.oneIn(64)) {
                add(StepKind::LongGame);
            }
            if (random.oneIn(24)) {
                anything();
                add(StepKind::Foreground, slot);
            }
        }
        if (random.oneIn(3)) {
            add(StepKind::EndProcess, slot);
            add(StepKind::Tick);
        }
        if (random.oneIn(4)) {
            add(StepKind::BreakCall);
        }
        add(StepKind::AppFinished);
        // The offer is answered on a machine that has changed since.
        switch (random.below(4)) {
        case 0:
            add(StepKind::BreakCall);
            add(StepKind::BreakCall);
            break;
        case 1:
            add(random.pick({StepKind::RemoveKey, StepKind::RemoveKey, StepKind::RemoveFile, StepKind::LockFile}),
                title);
            if (random.oneIn(2)) {
                add(StepKind::Bulk);
                add(StepKind::Press, 7, 0); // the offer, behind the report
            }
            break;
        default:
            break;
        }
        for (unsigned presses = random.below(4); presses > 0; --presses) {
            add(StepKind::Press, 0);
        }
    }

    Random random;
    std::size_t count;
    std::vector<Step> steps;
};

} // namespace

std::vector<Step> makeSteps(std::uint64_t seed, std::size_t count) {
    return Generator(seed, count).make();
}

std::string describe(const Step& step) {
    return std::string(kNames[static_cast<std::size_t>(step.kind)]) + " " + std::to_string(step.a) + " " +
           std::to_string(step.b);
}

} // namespace brisk::model
