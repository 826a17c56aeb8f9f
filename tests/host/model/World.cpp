#include "host/model/World.h"

#include "BriskHost.h"
#include "gfx/GfxInfoImpl.h"
#include "host/model/ServiceProcess.h"
#include "host/simulation/Desktop.h"
#include "host/simulation/Findings.h"
#include "host/simulation/System.h"
#include "host/simulation/Toasts.h"
#include "tracking/Services.h"
#include "tracking/Tracking.h"

#include <algorithm>

namespace brisk::model {

namespace {

// Frame rates and the native mode come from the environment, all else from the simulated Windows.
class ScriptedGfxInfo final : public GfxInfoImpl {
public:
    explicit ScriptedGfxInfo(const Environment& environment) : env(environment) { initialized = true; }

    std::uint32_t getCurrentFps() override { return env.fps; }
    DisplayInfo getNativeDisplayInfo() override {
        return {env.native->width, env.native->height, 0, env.native->refreshRate};
    }

private:
    const Environment& env;
};

Parameters makeParameters(Random& random) {
    Parameters parameters;
    const auto small = [&random]() -> std::optional<std::uint32_t> { return random.below(5); };
    parameters.warming = small();
    parameters.tracking = small();
    parameters.notTracking = small();
    parameters.toBeValid = small();
    if (random.oneIn(16)) {
        parameters = {};
        parameters.toBeValid = 1;
    }
    if (random.oneIn(6)) {
        parameters.fps = random.pick({0u, 14u, 15u, 30u, 300u, 301u, 2147483647u});
    }
    return parameters;
}

} // namespace

World::World(std::uint64_t worldSeed, const std::vector<Step>& stepsToRun)
    : seed(worldSeed), steps(stepsToRun), random((host::resetSimulation(), ServiceProcess::forget(), worldSeed)),
      titles(makeTitles(random, 2 + random.below(5))), machine(random, titles) {}

std::optional<Difference> World::run() {
    while (next < steps.size() && !difference) {
        runService();
        // A service that does not start leaves the world to change without it.
        if (!hasStarted && next < steps.size() && !difference) {
            execute(steps[next++]);
        }
    }
    return difference;
}

void World::runService() {
    ServiceModel service(machine.environment, titles);
    model = &service;
    const Parameters parameters = makeParameters(random);
    hasStarted = isQuitting = false;
    isStarting = true;
    failure.reset();
    posted.reset();
    bool shouldStart = false;
    expect([&] { shouldStart = service.start(parameters); });
    host::desktop().onIdle = [this] { onIdle(); };
    const int exitCode = ServiceProcess::run(parameters.commandLine());
    check(hasStarted == shouldStart, hasStarted ? "the service started" : "the service did not start");
    if (failure) {
        service.endBy(*failure);
    } else if (hasStarted) {
        service.end();
    }
    checkEqual("exit code", exitCode, failure ? 1 : 0);
    // Nothing comes of what is pressed now.
    for (std::uint64_t button = 0; button < 3; ++button) {
        press({StepKind::Press, 0, button});
    }
    compareLines();
    compareToasts();
    compareHandles(hasStarted && (failure || !isQuitting) ? 1 : 0);
    for (const std::string& finding : host::takeFindings()) {
        check(false, finding);
    }
    model = nullptr;
    ServiceProcess::forget();
    host::notificationArea() = {};
    host::notificationArea().canShow = machine.environment.canShow;
}

void World::onIdle() {
    hasStarted = true;
    if (isStarting) {
        isStarting = false;
        if (machine.environment.native) {
            gfxInfo = std::make_shared<ScriptedGfxInfo>(machine.environment);
        }
        check(host::desktop().findWindow(BRISK_WINDOW_CLASS) != nullptr, "no window");
        check(host::simulatedSystem().events[BRISK_STARTED_EVENT], "the started event is not set");
        posted = MSG{host::desktop().findWindow(BRISK_WINDOW_CLASS), WM_CREATE, 0, 0};
    }
    compare();
    while (!difference && next < steps.size()) {
        if (execute(steps[next++])) {
            return;
        }
        compare();
    }
    if (!isQuitting) {
        execute({StepKind::Quit, 0, 0});
    }
}

template <class Handler>
void World::expect(const Handler& handler) {
    try {
        handler();
    } catch (const Failure& thrown) {
        failure = thrown;
    }
}

void World::post(UINT message, WPARAM wParam, LPARAM lParam) {
    const HWND window = host::desktop().findWindow(BRISK_WINDOW_CLASS);
    posted = MSG{window, message, wParam, lParam};
    host::desktop().queue.push_back(*posted);
    host::desktop().defaultResult = static_cast<LRESULT>(wParam ^ message);
}

bool World::execute(const Step& step) {
    switch (step.kind) {
    case StepKind::Launch:
        machine.launch(step.a, step.b, step.b >> 8);
        return false;
    case StepKind::EndProcess:
        machine.endProcess(step.a, step.b);
        return false;
    case StepKind::Foreground:
        machine.bringToForeground(step.a, step.b);
        return false;
    case StepKind::Company:
        machine.setCompany(step.a, step.b);
        return false;
    case StepKind::Install:
        machine.install(step.a, step.b);
        return false;
    case StepKind::WriteFile:
        machine.writeFile(step.a, step.b);
        return false;
    case StepKind::RemoveFile:
        machine.removeFile(step.a, step.b);
        return false;
    case StepKind::LockFile:
        machine.lockFile(step.a, step.b);
        return false;
    case StepKind::SaveFolders:
        machine.setSaveFolders(step.a, step.b);
        return false;
    case StepKind::WriteValue:
        machine.writeValue(step.a, step.b);
        return false;
    case StepKind::RemoveKey:
        machine.removeKey(step.a);
        return false;
    case StepKind::UserState:
        machine.setUserState(step.a, step.b);
        return false;
    case StepKind::Display:
        machine.setDisplays(step.a);
        return false;
    case StepKind::Fps:
        machine.setFps(step.a);
        return false;
    case StepKind::BreakCall:
        machine.breakCall(step.a, step.b);
        return false;
    case StepKind::MendCalls:
        machine.mendCalls();
        return false;
    case StepKind::BreakFiles:
        machine.breakFiles(step.a);
        return false;
    case StepKind::BreakToasts:
        machine.breakToasts(step.a);
        return false;
    default:
        break;
    }
    // All others are for a running service.
    if (!model) {
        return false;
    }
    switch (step.kind) {
    case StepKind::Press:
        press(step);
        return false;
    case StepKind::ToastEvent:
        raiseToastEvent(step);
        return false;
    case StepKind::Tick:
        if (!model->timerRuns) {
            return false;
        }
        post(WM_TIMER, kTrackingTimerId, 0);
        expect([&] { model->onTimer(); });
        return true;
    case StepKind::LateTick: {
        const WPARAM id = step.a % 4 == 0 ? (step.b % 2 == 0 ? 1 : step.b) : 0;
        post(WM_TIMER, id, 0);
        if (id == 0) {
            expect([&] { model->onTimer(); });
        }
        return true;
    }
    case StepKind::AppStarted:
        postAppStarted(step);
        return true;
    case StepKind::AppFinished: {
        const auto lParam = static_cast<LPARAM>(step.a % 4 == 0 ? 0 : step.a);
        post(BRISK_APP_FINISHED, step.b, lParam);
        expect([&] { model->onAppFinished(step.b, lParam); });
        return true;
    }
    case StepKind::LongGame:
        if (model->state >= 2) {
            model->fpsSum = trackingContext.fpsSum += step.a % (std::uint64_t{1} << 40);
            model->sampleCount = trackingContext.sampleCount = trackingContext.fpsSum / (15 + step.b % 200) + 1;
        }
        return false;
    case StepKind::Bulk:
        post(BRISK_MASSIVE_PATCHING, step.a, 0);
        expect([&] { model->onBulk(); });
        return true;
    case StepKind::Reset:
        post(BRISK_RESET_PROMPT_COUNTERS, 0, 0);
        expect([&] { model->onReset(); });
        return true;
    case StepKind::TitleInfo:
        postTitleInfo(step);
        return true;
    case StepKind::Quit:
        isQuitting = true;
        post(BRISK_QUIT, step.a, 0);
        expect([&] { model->onQuit(); });
        return true;
    case StepKind::EndSession:
        post(WM_ENDSESSION, step.a, static_cast<LPARAM>(step.b));
        model->onEndSession(step.a != 0);
        return true;
    default: {
        const UINT others[] = {WM_USER, WM_USER + 4, 0x7FFE, WM_CLOSE, WM_USER + 0x1002};
        post(others[step.a % 5], step.b, 0);
        return true;
    }
    }
}

void World::postAppStarted(const Step& step) {
    WPARAM gameId = 100 + machine.titleOf(step.a);
    LPARAM processId = machine.processOf(step.a);
    switch (step.b % 10) {
    case 0:
        gameId = step.b >> 8;
        break;
    case 1:
        processId = static_cast<LPARAM>(step.b >> 8);
        break;
    case 2: // only the low halves count
        gameId |= 0x700000000u;
        processId |= 0x7000000000000000;
        break;
    default:
        break;
    }
    post(BRISK_APP_STARTED, gameId, processId);
    expect([&] { model->onAppStarted(gameId, processId); });
}

void World::postTitleInfo(const Step& step) {
    const bool isWellFormed = step.a % 2 == 0;
    titleInfo = isWellFormed ? R"([{"id": 100, "config_type": "txt"}])" : step.a % 3 == 0 ? "" : R"([{"id": 1)";
    titleInfoMessage = {step.b % 3 == 0 ? 0x405u : 0x404u, static_cast<DWORD>(titleInfo.size()), titleInfo.data()};
    const bool hasStructure = step.b % 5 != 0;
    const WPARAM tag = step.b % 7 == 0 ? 0x12345 : 0x404;
    post(WM_COPYDATA, tag, hasStructure ? reinterpret_cast<LPARAM>(&titleInfoMessage) : 0);
    model->onCopyData(hasStructure && tag == 0x404 && titleInfoMessage.dwData == 0x404, isWellFormed);
}

// Mostly the latest toast, now and then one that went long ago.
void World::press(const Step& step) {
    const auto& all = host::notificationArea().all;
    if (all.empty() || all.size() != model->toasts.size()) {
        return;
    }
    const std::size_t back = step.a % 4 == 3 ? step.a / 4 % std::min<std::size_t>(all.size(), 5) : 0;
    const std::size_t index = all.size() - 1 - back;
    const int button = step.b % 8 == 7 ? static_cast<int>(step.b / 8 % 6) - 1 : static_cast<int>(step.b % 3);
    const bool expected = model->press(model->toasts[index], button);
    checkEqual("press", host::pressButton(*all[index], button), expected);
}

void World::raiseToastEvent(const Step& step) {
    const auto& all = host::notificationArea().all;
    if (all.empty() || all.size() != model->toasts.size()) {
        return;
    }
    const std::size_t index = step.a % 2 == 0 ? all.size() - 1 : step.a % all.size();
    model->otherEvent(model->toasts[index]);
    const auto toast = all[index];
    const bool isHandled = step.b % 3 == 0   ? host::pressBody(*toast)
                           : step.b % 3 == 1 ? host::failToast(*toast)
                                             : host::dismiss(*toast, WinToastLib::ToastDismissalReason::TimedOut);
    check(isHandled, "a toast's event failed");
}

} // namespace brisk::model
