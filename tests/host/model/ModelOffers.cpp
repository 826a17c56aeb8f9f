// Displays, the judgement at a game's end, the bulk pass and the toasts.
#include "host/model/ServiceModel.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace brisk::model {

namespace {

const std::string kAdjustments = "Orlan Software: Meridian Edition Game Adjustments";
const std::string kNoConfiguration =
    "Game adjustments have not been applied due to an unexpected issue while obtaining the optimal configuration.";
const std::string kErrors =
    "Orlan Software: Meridian Edition has encountered some errors while adjusting game settings. "
    "This may be resolved by starting and stopping the game, or by changing graphics settings.";

std::string number(float value) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", static_cast<double>(value));
    return text;
}

float aspectOf(const Mode& mode) {
    return static_cast<float>(mode.height) / static_cast<float>(mode.width);
}

std::string sizeOf(const Mode& mode) {
    return std::to_string(mode.width) + "x" + std::to_string(mode.height);
}

const char* labelOf(Action action) {
    switch (action) {
    case Action::Configure:
        return "Configure Settings";
    case Action::NotNow:
        return "Not Now";
    case Action::DontAskAgain:
        return "Don't ask again";
    case Action::ReadMore:
        return "Read More";
    case Action::Dismiss:
        break;
    }
    return "Dismiss";
}

// Pairs of lines, three pairs a group.
std::string groupsOf(const std::string& body) {
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < body.size();) {
        const std::size_t end = std::min(body.find('\n', begin), body.size());
        lines.push_back(body.substr(begin, end - begin));
        begin = end + 1;
    }
    std::string text = "<group><subgroup>";
    for (std::size_t i = 0; i + 1 < lines.size(); i += 2) {
        text += i > 0 && i % 6 == 0 ? "</subgroup></group><group><subgroup>" : "";
        text += "<text  hint-style=\"base\">" + lines[i] + "</text>\n<text  hint-style=\"captionSubtle\">" +
                lines[i + 1] + "</text>\n";
    }
    return text + "</subgroup></group>";
}

} // namespace

std::vector<std::string> ServiceModel::primaryDisplays(std::size_t limit) {
    std::vector<std::string> names;
    for (std::size_t index = 0; names.size() < limit; ++index) {
        if (env.fails(Fault::DisplayDevice) || index >= env.displays.size()) {
            break;
        }
        if (env.displays[index].primary) {
            names.push_back(env.displays[index].name);
        }
    }
    return names;
}

Mode ServiceModel::currentMode() {
    line("Brisk : get current display info.");
    Mode current;
    for (const std::string& name : primaryDisplays(env.displays.size() + 1)) {
        const bool failed = env.fails(Fault::DisplaySettings);
        for (const Display& display : env.displays) {
            if (display.name == name && display.current.width != 0 && !failed) {
                current = display.current;
            }
        }
    }
    return current;
}

Mode ServiceModel::nativeMode() {
    return env.native ? *env.native : currentMode();
}

Mode ServiceModel::optimalMode(const Mode& native) {
    line("Brisk : get available display info modes.");
    std::vector<Mode> modes;
    if (const auto names = primaryDisplays(1); !names.empty()) {
        const auto display = std::find_if(env.displays.begin(), env.displays.end(),
                                          [&](const Display& each) { return each.name == names.front(); });
        while (!env.fails(Fault::DisplaySettings) && modes.size() < display->modes.size()) {
            modes.push_back(display->modes[modes.size()]);
        }
    }
    line("Brisk : found " + std::to_string(modes.size()) + " display modes.");
    std::set<std::pair<std::uint32_t, std::uint32_t>> sizes;
    for (const Mode& mode : modes) {
        if (std::fabs(aspectOf(mode) - aspectOf(native)) <= 0.01f && mode.width <= native.width) {
            sizes.insert({mode.width, mode.height});
        }
    }
    if (sizes.size() < 2) {
        line("Brisk : unable to find optimal resolution.");
        return {};
    }
    const auto second = std::prev(sizes.end(), 2);
    const Mode optimal{second->first, second->second, 0};
    line("Brisk : optimal resolution: " + sizeOf(optimal));
    return optimal;
}

void ServiceModel::onAppFinished(std::uint64_t wParam, std::int64_t lParam) {
    char parameters[80];
    std::snprintf(parameters, sizeof parameters, "p1 = %llu, p2 = %s%llx", static_cast<unsigned long long>(wParam),
                  lParam == 0 ? "" : "0x", static_cast<unsigned long long>(lParam));
    line(std::string("Brisk : onAppFinished, ") + parameters);
    if (state == 0) {
        line("Brisk : got BRISK_APP_FINISHED message in IDLE state.");
        return;
    }
    timerRuns = false;
    switchTo(0);
    line("Brisk : average fps = " + std::to_string(averageFps) + ", intervals = " + std::to_string(sampleCount));
    const Mode current = currentMode();
    const Mode native = nativeMode();
    line("Brisk : native resolution: " + sizeOf(native));
    line("Brisk : aspect ratio: " + number(aspectOf(native)));
    if (current.width != native.width || current.height != native.height) {
        line("Brisk : current display resolution is different to native display resolution. Skip.");
        return;
    }
    setResolution("native_", native);
    const Mode optimal = optimalMode(native);
    const LoadedTitle* title = find(executableName);
    const bool hasLuma = title && title->title.luma != 0;
    if (optimal.width == 0 && !hasLuma) {
        line("Brisk : couldn't get optimal display resolution. Skip.");
        clearToasts();
        show(kAdjustments, kNoConfiguration, "", {});
        return;
    }
    setResolution("", optimal);
    if (sampleCount < toBeValid) {
        line("Brisk : insufficient data collected (" + std::to_string(sampleCount) + " intervals).");
        return;
    }
    if (!decideOffer(native.refreshRate)) {
        return;
    }
    const std::string name = title->title.name;
    clearToasts();
    show("Orlan Software: Meridian Edition Suggested Game Settings",
         "Recommendations are available for " + name + " to improve your gaming experience.",
         hasLuma ? "Enabled LUMA for " + name + " using " + settingText(executableName) + "."
                 : "Enabled TANO for " + name + " using " + sizeOf(optimal) + ".",
         {Action::Configure, Action::NotNow, Action::DontAskAgain});
}

bool ServiceModel::decideOffer(std::uint32_t refreshRate) {
    const float ratio = static_cast<float>(averageFps) / static_cast<float>(refreshRate);
    line("Brisk : FPS ratio to optimal is " + number(ratio));
    if (!(ratio < 0.85f)) {
        return false;
    }
    line("Brisk : shouldShowToast");
    const bool needed = needsOptimizing(executableName);
    line(std::string("Brisk : titleManager.isTitleNeedToBeOptimized = ") + (needed ? "1" : "0"));
    if (!needed) {
        return false;
    }
    const Key* main = createKey("areToastsAllowed", "software\\orlan\\briskgct");
    const bool allowed = !main || readNumber(*main, "ToastsNotAllowed").value_or(0) == 0;
    line(std::string("Brisk : areToastsAllowed = ") + (allowed ? "1" : "0"));
    if (!allowed) {
        return false;
    }
    const Key* shown = createKey("getNumberOfToastsShown", "software\\orlan\\briskgct\\toastsshown");
    // Whatever stands there counts as unsigned.
    const auto count = static_cast<std::uint32_t>(shown ? readNumber(*shown, executableName).value_or(0) : 0);
    line("Brisk : getNumberOfToastsShown = " + std::to_string(count));
    return count < 3;
}

void ServiceModel::onBulk() {
    line("Brisk : onMassivePatching");
    clearToasts();
    std::string report;
    switch (patchAll(report)) {
    case 0:
        show(kAdjustments,
             "Orlan Software: Meridian Edition made adjustments to improve your gaming experience for some games.",
             "Use \"Read More\" to find details on the adjustments made.", {Action::ReadMore, Action::Dismiss}, report);
        break;
    case 1:
        show(kAdjustments,
             "Orlan Software: Meridian Edition has detected that optimal settings have already been applied for "
             "supported games.",
             "", {});
        break;
    case 2:
        show(kAdjustments, kNoConfiguration, "", {});
        break;
    default:
        show(kAdjustments, kErrors + " ", "", {Action::ReadMore, Action::Dismiss}, report);
        break;
    }
}

unsigned ServiceModel::patchAll(std::string& report) {
    line("Brisk : doMassivePatching");
    const Mode native = nativeMode();
    line("Brisk : native resolution: " + sizeOf(native));
    line("Brisk : aspect ratio: " + number(aspectOf(native)));
    setResolution("native_", native);
    const Mode optimal = optimalMode(native);
    if (optimal.width == 0) {
        line("Brisk : couldn't get optimal display resolution. Skip.");
        return 2;
    }
    setResolution("", optimal);
    unsigned patched = 0;
    bool failed = false;
    for (const auto& [binary, title] : titles) {
        if (!isSupported("", binary, "")) {
            line("Brisk : config for " + binary + " was not found. Skip.");
            continue;
        }
        std::string detail;
        if (!needsOptimizing(binary)) {
            line("Brisk : " + binary + " doesn't need optimization. Skip.");
            detail = "No additional adjustments required.";
        } else if (!patch(binary)) {
            detail = "An unexpected issue was encountered.";
            failed = true;
        } else {
            ++patched;
            detail = title.title.luma != 0 ? "Enabled LUMA using " + settingText(binary) + "."
                                           : "Enabled TANO using " + sizeOf(optimal) + ".";
        }
        report += title.title.name + "\n" + detail + "\n";
    }
    return failed ? 3 : patched > 0 ? 0 : 1;
}

void ServiceModel::clearToasts() {
    for (ShownToast& toast : toasts) {
        if (toast.isInTable) {
            toast.isInTable = toast.isShown = false;
        }
    }
}

void ServiceModel::show(const std::string& title, const std::string& subtitle, const std::string& body,
                        const std::vector<Action>& actions, const std::string& report) {
    if (!env.canShow) {
        line("Brisk : ToastManager: Can't show notification");
        return;
    }
    std::string text = "\n<toast template=\"ToastGeneric\" duration=\"long\" scenario=\"Default\"><visual><binding "
                       "template=\"ToastGeneric\"><image placement=\"appLogoOverride\" hint-crop=\"circle\" "
                       "src=\"\"/><text>" +
                       title + "</text><text>" + subtitle + "</text>\n";
    text += body.find('\n') == std::string::npos ? "<text>" + body + "</text>" : groupsOf(body);
    text += "</binding></visual><actions>";
    for (std::size_t i = 0; i < actions.size(); ++i) {
        text +=
            std::string("<action content=\"") + labelOf(actions[i]) + "\" arguments=\"" + std::to_string(i) + "\"/>";
    }
    ShownToast toast;
    toast.document = text + "</actions></toast>";
    toast.actions = actions;
    toast.report = report;
    toasts.push_back(toast);
}

bool ServiceModel::press(ShownToast& toast, int index) {
    if (isEnding) {
        otherEvent(toast);
        return true;
    }
    const std::size_t position = static_cast<std::size_t>(&toast - toasts.data());
    toast.wasPressed = true;
    if (index < 0 || static_cast<std::size_t>(index) >= toast.actions.size()) {
        return false;
    }
    try {
        const Action action = toast.actions[static_cast<std::size_t>(index)];
        const std::string report = toast.report;
        run(action, report); // may show another toast
    } catch (const Failure&) {
        return false;
    }
    toasts[position].isInTable = false;
    return true;
}

void ServiceModel::otherEvent(ShownToast& toast) {
    if (toast.wasPressed) {
        toast.isInTable = false;
    }
}

void ServiceModel::run(Action action, const std::string& report) {
    switch (action) {
    case Action::Configure:
        line("Brisk : Toast : Configure Settings");
        if (!patch(executableName)) {
            clearToasts();
            show(kAdjustments, kErrors, "", {});
        }
        break;
    case Action::NotNow: {
        line("Brisk : Toast : Not now");
        Key* key = createKey("incNumberOfToastsShown", "software\\orlan\\briskgct\\toastsshown");
        bool counted = false;
        if (key) {
            const auto old = static_cast<std::uint32_t>(readNumber(*key, executableName).value_or(0));
            counted = writeNumber("incNumberOfToastsShown", *key, executableName, old + 1);
        }
        line((counted ? "Brisk : increment toasts counter for " : "Brisk : failed to increment toasts counter for ") +
             executableName);
        break;
    }
    case Action::DontAskAgain: {
        line("Brisk : Toast : Don't ask again");
        Key* key = createKey("disallowToasts", "software\\orlan\\briskgct");
        const bool disabled = key && writeNumber("disallowToasts", *key, "ToastsNotAllowed", 1);
        line(disabled ? "Brisk : toasts disabled" : "Brisk : failed to disable toasts");
        break;
    }
    case Action::ReadMore:
        line("Brisk : Toast : Read more");
        clearToasts();
        show(kAdjustments,
             "Orlan Software: Meridian Edition made adjustments to improve your gaming experience for:", report, {});
        break;
    case Action::Dismiss:
        break;
    }
}

} // namespace brisk::model
