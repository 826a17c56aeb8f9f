#include "tools/log/Session.h"

#include <algorithm>
#include <array>

namespace brisk::logbook {

const char* codeOf(SessionEnd end) {
    static constexpr std::array kCodes{"normal",      "running-already", "no-titles",  "malformed-database",
                                       "no-registry", "no-graphics",     "bad-number", "error",
                                       "cut-off"};
    return kCodes[static_cast<std::size_t>(end)];
}

const char* codeOf(FrameRateSource source) {
    static constexpr std::array kCodes{"unknown", "vendor-library", "refresh-rate", "fps-parameter"};
    return kCodes[static_cast<std::size_t>(source)];
}

const char* codeOf(TitleOutcome outcome) {
    static constexpr std::array kCodes{"patched", "nothing-to-do", "failed", "not-found", "cut-off"};
    return kCodes[static_cast<std::size_t>(outcome)];
}

const char* outcomeOf(const Pass& pass) {
    const auto has = [&pass](TitleOutcome outcome) {
        return std::any_of(pass.titles.begin(), pass.titles.end(),
                           [outcome](const PassTitle& title) { return title.outcome == outcome; });
    };
    if (pass.hasNoLowerResolution) {
        return "no-lower-resolution";
    }
    if (has(TitleOutcome::CutOff)) {
        return "cut-off";
    }
    if (has(TitleOutcome::Failed)) {
        return "failed";
    }
    return has(TitleOutcome::Patched) ? "patched" : "nothing-to-do";
}

} // namespace brisk::logbook
