// The whole service, from WinMain on, in the simulated Windows, beside the model: runs a sequence of steps on both and
// compares all that can be seen after every step.
#pragma once

#include "host/model/Machine.h"
#include "host/model/ServiceModel.h"
#include "host/model/Steps.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brisk::model {

struct Difference {
    std::size_t step = 0; // the number of the step after which it showed
    std::string text;
};

class World {
public:
    // Machine and titles depend on the seed alone.
    World(std::uint64_t seed, const std::vector<Step>& stepsToRun);

    // Nothing when service and model agree to the end.
    std::optional<Difference> run();

    // Of the step that is running or was run last. Also for whoever looks at a crash.
    std::size_t current() const { return next == 0 ? 0 : next - 1; }

private:
    void runService();
    // The message loop has nothing to do.
    void onIdle();
    // True when the step posted a message.
    bool execute(const Step& step);
    void post(UINT message, WPARAM wParam, LPARAM lParam);
    void postAppStarted(const Step& step);
    void postTitleInfo(const Step& step);
    void press(const Step& step);
    void raiseToastEvent(const Step& step);
    // The model's part of a message; an exception is kept for the end of the service.
    template <class Handler>
    void expect(const Handler& handler);

    void compare();
    void compareLines();
    void compareTracking();
    void compareToasts();
    void compareHandles(unsigned openEvents);
    void compareDefaultHandling();
    void check(bool holds, const std::string& what);
    template <class Value>
    void checkEqual(const char* what, const Value& actual, const Value& expected);

    std::uint64_t seed;
    const std::vector<Step>& steps;
    Random random;
    std::vector<Title> titles;
    Machine machine;
    ServiceModel* model = nullptr; // while the service runs
    std::size_t next = 0;
    std::optional<Difference> difference;
    std::optional<Failure> failure; // expected to end the service
    std::optional<MSG> posted;
    std::string titleInfo;
    COPYDATASTRUCT titleInfoMessage{};
    bool isStarting = false;
    bool hasStarted = false;
    bool isQuitting = false;
};

} // namespace brisk::model
