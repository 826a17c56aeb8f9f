#pragma once

#include "gfx/IGfxInfo.h"

#include <functional>
#include <string>
#include <vector>

namespace brisk::testing {

// Graphics information as a test sets it.
class FakeGfxInfo final : public IGfxInfo {
public:
    std::uint32_t fps = 60;
    DisplayInfo current{1920, 1080, 32, 60};
    DisplayInfo native{1920, 1080, 32, 60};
    DisplayInfo optimal{1280, 720, 0, 0};

    // The questions asked so far.
    std::vector<std::string> questions;
    // The mode that the optimal resolution was asked for.
    DisplayInfo reference;
    // Runs in every question.
    std::function<void()> meanwhile;

    std::uint32_t getCurrentFps() override { return answer("fps", fps); }
    bool isInitialized() const override { return true; }
    DisplayInfo getCurrentDisplayInfo() override { return answer("current", current); }
    DisplayInfo getNativeDisplayInfo() override { return answer("native", native); }
    DisplayInfo getOptimalResolution(const DisplayInfo& mode) override {
        reference = mode;
        return answer("optimal", optimal);
    }

private:
    template <class Value>
    Value answer(const char* question, const Value& value) {
        questions.emplace_back(question);
        if (meanwhile) {
            meanwhile();
        }
        return value;
    }
};

} // namespace brisk::testing
