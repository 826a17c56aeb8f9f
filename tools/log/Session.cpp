#include "tools/log/Session.h"

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
    static constexpr std::array kCodes{"patched", "nothing-to-do", "condition", "not-loaded",
                                       "failed",  "not-found",     "cut-off"};
    return kCodes[static_cast<std::size_t>(outcome)];
}

const char* outcomeOf(const Pass& pass) {
    const auto has = [&pass](TitleOutcome outcome) { return pass.counts.contains(outcome); };
    if (pass.hasNoLowerResolution) {
        return "no-lower-resolution";
    }
    if (pass.isCutOff || has(TitleOutcome::CutOff)) {
        return "cut-off";
    }
    if (has(TitleOutcome::Failed)) {
        return "failed";
    }
    return has(TitleOutcome::Patched) ? "patched" : "nothing-to-do";
}

std::string countsOf(const Pass& pass) {
    std::string text;
    for (const auto& [outcome, count] : pass.counts) {
        text += (text.empty() ? "" : ", ") + std::to_string(count) + " " + codeOf(outcome);
    }
    return text;
}

} // namespace brisk::logbook
