// Start-up, the messages and the tracking of one game.
#include "host/model/ServiceModel.h"

#include "base/Version.h"

#include <cstdio>

namespace brisk::model {

namespace {

std::string hex(std::uint64_t number) {
    char text[32];
    std::snprintf(text, sizeof text, number == 0 ? "%lx" : "0x%lx", static_cast<unsigned long>(number));
    return text;
}

std::string decimal(std::uint64_t number) {
    return std::to_string(number);
}

std::string shortest(float number) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", static_cast<double>(number));
    return text;
}

const char* const kStates[] = {"IDLE", "WAITING_APP", "APP_WARMING", "TRACKING", "NOT_TRACKING"};

} // namespace

std::string Parameters::commandLine() const {
    std::string text;
    const auto add = [&text](const char* flag, const std::optional<std::uint32_t>& value) {
        if (value) {
            text += std::string(text.empty() ? "" : " ") + flag + " " + std::to_string(*value);
        }
    };
    add("-nw", warming);
    add("-nt", tracking);
    add("-nn", notTracking);
    add("-nv", toBeValid);
    add("-fps", fps);
    return text;
}

void ServiceModel::line(const std::string& text) {
    lines.push_back(pending + text + "\n");
    pending.clear();
}

bool ServiceModel::start(const Parameters& parameters) {
    const auto read = [this](const char* flag, const char* name, const std::optional<std::uint32_t>& value) {
        line(std::string("Brisk : looking for command line parameter ") + flag + " (" + name + ")");
        if (value) {
            line(std::string("Brisk : set ") + name + " to " + decimal(*value));
        }
    };
    read("-nw", "NumberOfIntervalsForWarming", parameters.warming);
    read("-nt", "NumberOfIntervalsForTracking", parameters.tracking);
    read("-nn", "NumberOfIntervalsForNotTracking", parameters.notTracking);
    read("-nv", "NumberOfTrackingIntervalsToBeValid", parameters.toBeValid);
    read("-fps", "fpsOverride", parameters.fps);
    read("-log", "logToFile", std::nullopt);
    warming = parameters.warming.value_or(120);
    tracking = parameters.tracking.value_or(30);
    notTracking = parameters.notTracking.value_or(120);
    toBeValid = parameters.toBeValid.value_or(120);
    fpsOverride = parameters.fps;

    line(std::string("Brisk ") + kVersion + " : started");
    const bool hasTitles = loadDatabase();
    if (hasTitles) {
        line("Brisk : titles DB processed.");
    }
    const bool hasRegistry = createKey(nullptr, "software\\orlan\\briskgct") != nullptr;
    line(hasRegistry ? "Brisk : access to the Windows Registry granted."
                     : "Brisk : access to the Windows Registry not granted.");
    line("Brisk : initializing GfxInfoKestrel.");
    line("Brisk : initializing Kestrel.");
    line("Brisk : failed to initialize Kestrel.");
    line("Brisk : initializing GfxInfoGen.");
    const Mode mode = currentMode();
    genericFps = mode.refreshRate;
    if (mode.width == 0) {
        line("Brisk : failed to create GfxInfo.");
    }
    if (hasTitles && hasRegistry && mode.width != 0) {
        return true;
    }
    end();
    return false;
}

void ServiceModel::end() {
    isEnding = true;
    line("Brisk : finished");
}

void ServiceModel::endBy(const Failure& failure) {
    isEnding = true;
    line("Brisk : " + failure.text);
}

bool ServiceModel::loadDatabase() {
    if (!env.canRead) {
        line("Brisk : unable to open title database.");
        return false;
    }
    for (const Title& title : titlesInDatabase) {
        LoadedTitle loaded;
        loaded.title = title;
        for (std::string& location : loaded.title.locations) {
            const std::string placeholder = "%LOCALAPPDATA%";
            if (const std::size_t found = location.find(placeholder); found != std::string::npos) {
                location.replace(found, placeholder.size(), "C:\\Users\\Player\\AppData\\Local");
            }
        }
        if (title.id) {
            ids.insert(*title.id);
        }
        titles[title.binary] = loaded;
    }
    return !titles.empty();
}

ServiceModel::LoadedTitle* ServiceModel::find(const std::string& binary) {
    const auto found = titles.find(binary);
    return found == titles.end() ? nullptr : &found->second;
}

void ServiceModel::switchTo(unsigned next) {
    intervalCounter = 0;
    state = next;
    line(std::string("Brisk : switch to ") + kStates[next]);
}

void ServiceModel::resetContext() {
    if (processHandle == Handle::Open) {
        ++droppedHandles;
    }
    processHandle = Handle::None;
    gameId = processId = averageFps = 0;
    sampleCount = intervalCounter = fpsSum = 0;
    publisher.clear();
    executableName.clear();
}

void ServiceModel::onAppStarted(std::uint64_t wParam, std::int64_t lParam) {
    const auto game = static_cast<std::uint32_t>(wParam);
    const auto process = static_cast<std::uint32_t>(lParam);
    line("Brisk : onAppStarted, p1 = " + decimal(game) + ", p2 = " + hex(process));
    if (state != 0) {
        line("Brisk : stop tracking, doesn't track more than one app");
        timerRuns = false;
        switchTo(0);
        resetContext();
        return;
    }
    if (!ids.contains(game)) {
        line("Brisk : GameID " + decimal(game) + " is not supported. Skip.");
        return;
    }
    clearToasts();
    line("Brisk : waiting for activation, GameID " + decimal(game) + ", PID " + hex(process));
    resetContext();
    gameId = game;
    processId = process;
    switchTo(1);
    timerRuns = !env.fails(Fault::SetTimer);
}

void ServiceModel::onTimer() {
    switch (state) {
    case 1:
        if (shouldStart()) {
            switchTo(2);
        }
        break;
    case 2:
        if (isActive() && ++intervalCounter >= warming) {
            switchTo(3);
        }
        break;
    case 3:
        if (isActive()) {
            ++intervalCounter;
            sample();
        }
        if (intervalCounter >= tracking) {
            switchTo(4);
        }
        break;
    case 4:
        if (isActive() && ++intervalCounter >= notTracking) {
            switchTo(3);
        }
        break;
    default:
        break;
    }
}

void ServiceModel::sample() {
    const std::uint32_t whole = fpsOverride ? *fpsOverride : env.native ? env.fps : genericFps;
    const auto fps = static_cast<float>(whole);
    line("Brisk : FPS = " + shortest(fps));
    if (fps >= 15.0f && fps <= 300.0f) {
        ++sampleCount;
        const float sum = static_cast<float>(fpsSum) + fps;
        fpsSum = static_cast<std::uint64_t>(sum);
        averageFps = static_cast<std::uint32_t>(fpsSum / sampleCount);
    }
}

bool ServiceModel::shouldStart() {
    line("Brisk : shouldStartTracking");
    const std::uint64_t window = env.fails(Fault::ForegroundWindow) ? 0 : env.foreground;
    line("Brisk : HWND = " + hex(window));
    if (window == 0) {
        return false;
    }
    const bool isKnown = !env.fails(Fault::WindowProcess) && env.windows.contains(window);
    const std::uint32_t owner = isKnown ? env.windows[window] : 0;
    line("Brisk : PID = " + hex(owner));
    if (owner != processId) {
        line("Brisk : expected PID " + hex(processId) + " instead of PID " + hex(owner));
        return false;
    }
    const auto canOpen = [this](std::uint32_t id) {
        const bool failed = env.fails(Fault::OpenProcess);
        return !failed && env.processes.contains(id);
    };
    std::string folder;
    std::string name;
    if (canOpen(owner) && !env.fails(Fault::ModuleName)) {
        folder = env.processes[owner].folder;
        name = env.processes[owner].name;
    }
    if (name.empty()) {
        line("Brisk : couldn't get file name by PID");
    }
    const std::string company = companyOf(folder + "\\" + name);
    if (company.empty()) {
        line("Brisk : couldn't get file properties for " + name);
    }
    if (!isSupported(company, name, folder)) {
        line("Brisk : config for " + name + " was not found. Skip.");
        return false;
    }
    publisher = company;
    executableName = name;
    if (!canOpen(processId)) {
        processHandle = Handle::None;
        line("Brisk : OpenProcess failed. Can't track app.");
        return false;
    }
    processHandle = Handle::Open;
    return true;
}

std::string ServiceModel::companyOf(const std::string& path) {
    const bool noSize = env.fails(Fault::VersionSize);
    if (noSize || !env.companies.contains(path)) {
        return {};
    }
    if (env.fails(Fault::VersionRead)) {
        return {};
    }
    if (env.fails(Fault::VersionQuery)) { // the translation
        return {};
    }
    env.fails(Fault::VersionQuery); // the product
    const bool noCompany = env.fails(Fault::VersionQuery);
    env.fails(Fault::VersionQuery); // the copyright
    env.fails(Fault::VersionQuery); // the version
    return noCompany ? std::string() : env.companies[path];
}

bool ServiceModel::isActive() {
    const std::uint64_t window = env.fails(Fault::ForegroundWindow) ? 0 : env.foreground;
    const bool failed = env.fails(Fault::ExitCode);
    if (!failed && processHandle == Handle::Closed) {
        ++lateExitCodes;
    }
    if (failed || processHandle != Handle::Open) {
        line("Brisk : failed to get tracked process exit code.");
        return false;
    }
    if (env.processes[processId].exitCode != 259) {
        line("Brisk : tracked process is closed. Skip tracking, waiting for BRISK_APP_FINISHED message.");
        timerRuns = false;
        processHandle = Handle::Closed;
        return false;
    }
    if (env.fails(Fault::IsWindow) || !env.windows.contains(window)) {
        return false;
    }
    if (env.fails(Fault::WindowProcess) || env.windows[window] != processId) {
        line("Brisk : foreground window doesn't belong to tracked process.");
        return false;
    }
    return true;
}

void ServiceModel::onReset() {
    line("Brisk : onResetPromptCounters");
    const auto fail = [this](const std::string& text, std::int32_t code) {
        line("Brisk : " + text + " failed. Error " + std::to_string(code) + ".");
    };
    const auto main = env.currentUser.find("software\\orlan\\briskgct");
    bool done = false;
    if (env.fails(Fault::OpenKey)) {
        fail("resetToastsAllowed : RegOpenKey", env.codeOf(Fault::OpenKey));
    } else if (main == env.currentUser.end()) {
        fail("resetToastsAllowed : RegOpenKey", 2);
    } else if (env.fails(Fault::DeleteValue)) {
        fail("resetToastsAllowed : RegDeleteValue", env.codeOf(Fault::DeleteValue));
    } else if (main->second.values.erase("ToastsNotAllowed") == 0) {
        fail("resetToastsAllowed : RegDeleteValue", 2);
    } else {
        done = true;
    }
    if (!done) {
        line("Brisk : resetToastsAllowed couldn't delete key");
    }
    const auto shown = env.currentUser.find("software\\orlan\\briskgct\\toastsshown");
    done = false;
    if (env.fails(Fault::OpenKeyEx)) {
        fail("resetToastsShown : RegOpenKeyEx", env.codeOf(Fault::OpenKeyEx));
    } else if (shown == env.currentUser.end()) {
        fail("resetToastsShown : RegOpenKeyEx", 2);
    } else if (env.fails(Fault::DeleteTree)) {
        fail("resetToastsShown : RegDeleteTree", env.codeOf(Fault::DeleteTree));
    } else {
        shown->second.values.clear();
        done = true;
    }
    if (!done) {
        line("Brisk : resetToastsShown couldn't delete tree");
    }
    ++registryVersion;
}

void ServiceModel::onCopyData(bool isTagged, bool isWellFormed) {
    line("Brisk : receiveTitleInfo");
    if (isTagged && !isWellFormed) {
        line("Brisk : got exception while processing titles info");
    }
}

void ServiceModel::onQuit() {
    clearToasts();
}

void ServiceModel::onEndSession(bool isItsEnd) {
    isEnding |= isItsEnd;
}

} // namespace brisk::model
